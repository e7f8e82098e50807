#include "Platform/processes/mac/MacAppleEvents.h"

#import <Carbon/Carbon.h>

#include "Platform/processes/mac/SerialNumbers.h"

namespace halvorn {
namespace {

// A descriptor, disposed of at the end; a null one may be disposed of as well.
class Descriptor {
 public:
  Descriptor() = default;
  ~Descriptor() { static_cast<void>(AEDisposeDesc(&value_)); }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  [[nodiscard]] AEDesc* get() { return &value_; }
  [[nodiscard]] const AEDesc* get() const { return &value_; }

 private:
  AEDesc value_ = {typeNull, nullptr};
};

class MacEventAddress : public EventAddress {
 public:
  Descriptor descriptor;
};

class MacAppleEvent : public AppleEvent {
 public:
  [[nodiscard]] int send(const EventSending& sending) override {
    const bool isHigh = sending.priority == EventSending::Priority::High;
    Descriptor reply;
    return AESend(descriptor.get(), reply.get(), sending.mode, isHigh ? kAEHighPriority : kAENormalPriority,
                  sending.timeoutTicks, nullptr, nullptr);
  }
  Descriptor descriptor;
};

}  // namespace

ThingOrStatus<EventAddress> MacAppleEvents::addressOf(ProcessSerialNumber number) {
  const ::ProcessSerialNumber target = systemNumber(number);
  auto address = std::make_unique<MacEventAddress>();
  const OSErr status =
      AECreateDesc(typeProcessSerialNumber, &target, sizeof(target), address->descriptor.get());
  if (status != noErr) return static_cast<int>(status);
  return std::unique_ptr<EventAddress>(std::move(address));
}

ThingOrStatus<AppleEvent> MacAppleEvents::createEvent(FourCharCode eventClass, FourCharCode eventID,
                                                      const EventAddress& address) {
  // Whoever holds an address had it from here.
  const auto& target = static_cast<const MacEventAddress&>(address);
  auto event = std::make_unique<MacAppleEvent>();
  const OSErr status = AECreateAppleEvent(eventClass, eventID, target.descriptor.get(), kAutoGenerateReturnID,
                                          kAnyTransactionID, event->descriptor.get());
  if (status != noErr) return static_cast<int>(status);
  return std::unique_ptr<AppleEvent>(std::move(event));
}

}  // namespace halvorn
