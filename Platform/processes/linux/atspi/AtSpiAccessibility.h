// Watching other programs' interfaces over the accessibility bus.
//
// Connects at the first question, which may start the bus. A program that does
// not take part cannot be watched.
#pragma once

#include <memory>
#include <string>

#include "Platform/processes/Accessibility.h"

namespace halvorn {

class MainThread;
class RunLoop;
class RunningApplications;

class AtSpiAccessibility : public Accessibility {
 public:
  // The addresses are those of DBUS_SESSION_BUS_ADDRESS and AT_SPI_BUS_ADDRESS, ""
  // where not set; the second one wins.
  AtSpiAccessibility(RunningApplications& applications, std::string sessionBusAddress,
                     std::string accessibilityBusAddress, RunLoop& loop, MainThread& mainThread);
  ~AtSpiAccessibility() override;

  AccessibilityElementPointer createApplicationElement(ProcessSerialNumber number) override;
  std::unique_ptr<AccessibilityObserver> createObserver(ProcessSerialNumber number,
                                                        Callback callback) override;

 private:
  class Observer;
  struct Session;

  // Null without an accessibility bus. A lost one is looked for anew.
  [[nodiscard]] std::shared_ptr<Session> session();

  RunningApplications& applications_;
  const std::string sessionBusAddress_;
  const std::string accessibilityBusAddress_;
  RunLoop& loop_;
  MainThread& mainThread_;
  std::shared_ptr<Session> session_;
};

}  // namespace halvorn
