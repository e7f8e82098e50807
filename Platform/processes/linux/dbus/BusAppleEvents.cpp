#include "Platform/processes/linux/dbus/BusAppleEvents.h"

#include <utility>

#include "Platform/processes/linux/dbus/BusApplication.h"
#include "Platform/processes/linux/proc/RunningApplications.h"

namespace halvorn {
namespace {

constexpr std::int32_t kReplyMask = 0x3;
constexpr std::int32_t kWaitForReply = 0x3;
constexpr double kTicksPerSecond = 60;
constexpr double kDefaultSeconds = 60;

constexpr FourCharCode kOpenApplication = fourCharCode("oapp");
constexpr FourCharCode kReopenApplication = fourCharCode("rapp");
constexpr FourCharCode kOpenDocuments = fourCharCode("odoc");

double secondsFrom(std::int32_t ticks) {
  if (ticks == EventSending::kDefaultTimeout) return kDefaultSeconds;
  return ticks > 0 ? static_cast<double>(ticks) / kTicksPerSecond : 0.0;
}

bool isKnown(FourCharCode eventClass, FourCharCode eventID) {
  return eventClass == kCoreEventClass && (eventID == kQuitApplicationEvent || eventID == kOpenApplication ||
                                           eventID == kReopenApplication || eventID == kOpenDocuments);
}

}  // namespace

class BusAppleEvents::Address : public EventAddress {
 public:
  explicit Address(HeldApplicationPointer to) : application(std::move(to)) {}
  const HeldApplicationPointer application;  // null: gone already
};

class BusAppleEvents::Event : public AppleEvent {
 public:
  Event(BusAppleEvents& owner, FourCharCode eventClass, FourCharCode eventID,
        HeldApplicationPointer application)
      : owner_(owner), eventClass_(eventClass), eventID_(eventID), application_(std::move(application)) {}

  int send(const EventSending& sending) override {
    if (!application_ || application_->hold.hasEnded()) return kNoSuchProcessStatus;
    if (!isKnown(eventClass_, eventID_)) return kEventNotHandledStatus;
    const std::lock_guard lock(owner_.mutex_);
    BusConnection* bus = owner_.bus();
    if (bus == nullptr) return kEventNotHandledStatus;
    int status = kEventNotHandledStatus;
    for (BusApplication& name : BusApplication::of(*bus, *application_)) {
      switch (sendTo(name, sending)) {
        case BusApplication::Answer::Done:
          return 0;
        case BusApplication::Answer::TimedOut:
          status = kEventTimedOutStatus;
          break;
        case BusApplication::Answer::NotHandled:
          break;
      }
    }
    return application_->hold.hasEnded() ? kNoSuchProcessStatus : status;
  }

 private:
  [[nodiscard]] BusApplication::Answer sendTo(BusApplication& name, const EventSending& sending) const {
    const auto reply = (sending.mode & kReplyMask) == kWaitForReply ? BusApplication::Reply::Awaited
                                                                    : BusApplication::Reply::Unwanted;
    const double seconds = secondsFrom(sending.timeoutTicks);
    if (eventID_ == kQuitApplicationEvent) return name.quit(reply, seconds);
    if (eventID_ == kOpenDocuments) return name.openNothing(reply, seconds);
    return name.activate(reply, seconds);
  }

  BusAppleEvents& owner_;
  const FourCharCode eventClass_;
  const FourCharCode eventID_;
  const HeldApplicationPointer application_;
};

BusAppleEvents::BusAppleEvents(RunningApplications& applications, std::string busAddress)
    : applications_(applications), busAddress_(std::move(busAddress)) {}

BusAppleEvents::~BusAppleEvents() = default;

BusConnection* BusAppleEvents::bus() {
  if (!bus_ || !bus_->isConnected()) bus_ = BusConnection::open(busAddress_);
  return bus_.get();
}

ThingOrStatus<EventAddress> BusAppleEvents::addressOf(ProcessSerialNumber number) {
  return std::make_unique<Address>(applications_.withNumber(number));
}

ThingOrStatus<AppleEvent> BusAppleEvents::createEvent(FourCharCode eventClass, FourCharCode eventID,
                                                      const EventAddress& address) {
  const auto* known = dynamic_cast<const Address*>(&address);
  if (known == nullptr) return kNoSuchProcessStatus;
  return std::make_unique<Event>(*this, eventClass, eventID, known->application);
}

}  // namespace halvorn
