// KWin's scripting, over the session bus: what it lets everybody ask, where its protocol for windows asks for leave.
//
// No wait is without an end: a compositor that does not answer in time has not answered, and from then on it is not
// waited for again until what it was asked has come.
//
// Thread: one at a time; what scripts tell arrives inside of the calls here.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "Platform/session/linux/bus/BusConnection.h"

namespace halvorn {

class KWinScripting {
 public:
  struct Compositor {
    pid_t listener = 0;  // who opened its socket: itself, or the program that started it
    std::string folder;  // where scripts are put while they are read
  };
  // Null where nobody on the bus has that name, where its owner is another compositor than this, and where it does not
  // answer in time.
  [[nodiscard]] static std::unique_ptr<KWinScripting> open(const std::string& busAddress,
                                                           const Compositor& compositor,
                                                           std::chrono::milliseconds patience);
  // Takes away what it has loaded.
  ~KWinScripting();
  KWinScripting(const KWinScripting&) = delete;
  KWinScripting& operator=(const KWinScripting&) = delete;

  // Runs the script, which stays until this object goes. There is one. False when that could not be had in time. It
  // tells us things by tell(text), each of which is handed to `told`.
  [[nodiscard]] bool keep(const std::string& script, std::function<void(const std::string&)> told);
  // Runs the script and takes it away again.
  void run(const std::string& script);

  // Has everything told that had happened before. False when that was not answered in time, or KWin has gone.
  [[nodiscard]] bool roundTrip();
  // Handles what has come already.
  void readMessages();
  [[nodiscard]] int descriptor() const { return bus_->descriptor(); }
  // False once KWin, or the bus, has gone; it stays so.
  [[nodiscard]] bool isUsable() const { return !hasGone_ && bus_->isConnected(); }

 private:
  KWinScripting(std::unique_ptr<BusConnection> bus, std::string owner, std::string folder, double patience);
  [[nodiscard]] bool load(const std::string& name, const std::string& script);
  [[nodiscard]] bool start(int number);
  void unload(const std::string& name);
  [[nodiscard]] BusMessage call(const std::string& path, const char* interface, const char* member) const;
  void take(DBusMessage* message);

  const std::unique_ptr<BusConnection> bus_;
  const std::string owner_;  // the name on the bus that nobody else gets after it
  const std::string folder_;
  const double patience_;  // seconds
  int lastScript_ = 0;
  std::string kept_;                       // the name of the script that stays; "" for none
  std::optional<std::uint32_t> question_;  // that was not answered yet
  bool hasGone_ = false;
  std::function<void(const std::string&)> told_;
};

}  // namespace halvorn
