// Events that one application sends another: quit, open, reopen ...
//
// Making and sending are apart because each can fail by itself. Statuses are 0 for success, else the system's
// number (-600 no such process, -1708 not handled, -1712 timed out).
//
// Thread: any.
#pragma once

#include <cstdint>
#include <memory>
#include <variant>

#include "Core/FourCharCode.h"
#include "Platform/processes/ProcessSource.h"

namespace halvorn {

inline constexpr int kNoSuchProcessStatus = -600;     // it has ended
inline constexpr int kEventNotHandledStatus = -1708;  // it does not know the event
inline constexpr int kEventTimedOutStatus = -1712;    // it did not answer in time

inline constexpr FourCharCode kCoreEventClass = fourCharCode("aevt");  // events that all applications know
inline constexpr FourCharCode kQuitApplicationEvent = fourCharCode("quit");  // asks it to end

// How an event is sent.
struct EventSending {
  enum class Priority { Normal, High };                // before or behind what waits already
  static constexpr std::int32_t kNoReply = 0x1;        // in `mode`: nobody waits
  static constexpr std::int32_t kDefaultTimeout = -1;  // as long as the system thinks right

  std::int32_t mode = kNoReply;                 // the flags of the system's send mode
  Priority priority = Priority::Normal;         // on arrival
  std::int32_t timeoutTicks = kDefaultTimeout;  // sixtieths of a second
};

// To whom an event goes. Whatever the system holds for it is released with the object.
class EventAddress {
 public:
  virtual ~EventAddress() = default;
};

class AppleEvent {  // made, and not sent yet
 public:
  virtual ~AppleEvent() = default;
  // Waits for the reply when the mode says so; the reply is thrown away. The status.
  [[nodiscard]] virtual int send(const EventSending& sending) = 0;
};

template <typename Thing>
using ThingOrStatus = std::variant<std::unique_ptr<Thing>, int>;  // why there is none

class AppleEvents {
 public:
  virtual ~AppleEvents() = default;
  // Of a running application.
  [[nodiscard]] virtual ThingOrStatus<EventAddress> addressOf(ProcessSerialNumber number) = 0;
  // An event without parameters, with a return id of the system's choice and no transaction.
  [[nodiscard]] virtual ThingOrStatus<AppleEvent> createEvent(FourCharCode eventClass, FourCharCode eventID,
                                                              const EventAddress& address) = 0;
};

}  // namespace halvorn
