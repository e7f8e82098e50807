// Events as the session bus has them.
//
// Quit is the application's own quit action, where it exports one; open, reopen and open documents are those
// of org.freedesktop.Application. No other event is handled. Connects at the first event that is sent.
#pragma once

#include <memory>
#include <mutex>
#include <string>

#include "Platform/processes/AppleEvents.h"
#include "Platform/session/linux/bus/BusConnection.h"

namespace halvorn {

class RunningApplications;

class BusAppleEvents : public AppleEvents {
 public:
  // `busAddress` as in DBUS_SESSION_BUS_ADDRESS; "" for none.
  BusAppleEvents(RunningApplications& applications, std::string busAddress);
  ~BusAppleEvents() override;

  ThingOrStatus<EventAddress> addressOf(ProcessSerialNumber number) override;
  ThingOrStatus<AppleEvent> createEvent(FourCharCode eventClass, FourCharCode eventID,
                                        const EventAddress& address) override;

 private:
  class Address;
  class Event;

  // Null without a bus. A lost connection is made anew. The lock is held by the caller.
  [[nodiscard]] BusConnection* bus();

  RunningApplications& applications_;
  const std::string busAddress_;
  std::mutex mutex_;
  std::unique_ptr<BusConnection> bus_;
};

}  // namespace halvorn
