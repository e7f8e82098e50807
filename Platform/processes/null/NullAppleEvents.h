// Events reach nobody.
#pragma once

#include "Platform/processes/AppleEvents.h"

namespace halvorn {

class NullAppleEvents : public AppleEvents {
 public:
  ThingOrStatus<EventAddress> addressOf(ProcessSerialNumber) override { return kNoSuchProcessStatus; }
  ThingOrStatus<EventAddress> addressOfPID(std::int32_t) override { return kNoSuchProcessStatus; }
  ThingOrStatus<AppleEvent> createEvent(FourCharCode, FourCharCode, const EventAddress&) override {
    return kEventNotHandledStatus;
  }
};

}  // namespace halvorn
