// An application on the session bus and the actions it exports.
#pragma once

#include <string>
#include <vector>

#include "Platform/session/linux/bus/BusConnection.h"

namespace halvorn {

class HeldApplication;

class BusApplication {
 public:
  // The names of the application that it can be called by, one entry each; none when it is not on the bus.
  [[nodiscard]] static std::vector<BusApplication> of(BusConnection& bus, const HeldApplication& application);

  enum class Answer { Done, NotHandled, TimedOut };
  enum class Reply { Awaited, Unwanted };

  // Looking for the action takes a moment, whether or not the reply to it is wanted.
  [[nodiscard]] Answer quit(Reply reply, double seconds);
  [[nodiscard]] Answer activate(Reply reply, double seconds);
  [[nodiscard]] Answer openNothing(Reply reply, double seconds);

 private:
  BusApplication(BusConnection& bus, std::string uniqueName, std::string path);
  [[nodiscard]] bool exportsMainApplication();
  [[nodiscard]] Answer perform(const BusMessage& message, Reply reply, double seconds);

  BusConnection* bus_;
  std::string uniqueName_;  // never given to anybody else, so nobody else can be reached by mistake
  std::string path_;        // that the application's interfaces lie on
};

// "org.example.My-App" -> "/org/example/My_App".
[[nodiscard]] std::string objectPathFor(const std::string& busName);

}  // namespace halvorn
