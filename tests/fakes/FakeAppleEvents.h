// Events that go nowhere and are written down.
#pragma once

#include <memory>
#include <utility>
#include <vector>

#include "Platform/processes/AppleEvents.h"

namespace halvorn {

class FakeAppleEvents : public AppleEvents {
 public:
  struct Sent {
    FourCharCode eventClass = 0;
    FourCharCode eventID = 0;
    ProcessSerialNumber number = {};
    EventSending sending = {};
  };

  ThingOrStatus<EventAddress> addressOf(ProcessSerialNumber number) override {
    return address({.number = number});
  }
  ThingOrStatus<AppleEvent> createEvent(FourCharCode eventClass, FourCharCode eventID,
                                        const EventAddress& address) override {
    if (eventStatus != 0) return eventStatus;
    Sent event = static_cast<const Address&>(address).to;
    event.eventClass = eventClass;
    event.eventID = eventID;
    return std::make_unique<Event>(*this, event);
  }

  // 0, or the failure of that step.
  int addressStatus = 0;
  int eventStatus = 0;
  int sendStatus = 0;

  std::vector<Sent> sent;
  int aliveDescriptors = 0;  // addresses and events not released yet

 private:
  class Counted {
   public:
    explicit Counted(int& count) : count_(count) { ++count_; }
    ~Counted() { --count_; }
    Counted(const Counted&) = delete;
    Counted& operator=(const Counted&) = delete;

   private:
    int& count_;
  };
  struct Address : EventAddress {
    Address(FakeAppleEvents& owner, Sent target) : to(std::move(target)), counted(owner.aliveDescriptors) {}
    Sent to;
    Counted counted;
  };
  struct Event : AppleEvent {
    Event(FakeAppleEvents& events, Sent content)
        : owner(events), what(std::move(content)), counted(events.aliveDescriptors) {}
    int send(const EventSending& sending) override {
      what.sending = sending;
      owner.sent.push_back(what);
      return owner.sendStatus;
    }
    FakeAppleEvents& owner;
    Sent what;
    Counted counted;
  };

  ThingOrStatus<EventAddress> address(const Sent& to) {
    if (addressStatus != 0) return addressStatus;
    return std::make_unique<Address>(*this, to);
  }
};

}  // namespace halvorn
