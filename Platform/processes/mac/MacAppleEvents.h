// Apple events, sent by the system's own manager of them.
#pragma once

#include "Platform/processes/AppleEvents.h"

namespace halvorn {

class MacAppleEvents : public AppleEvents {
 public:
  ThingOrStatus<EventAddress> addressOf(ProcessSerialNumber number) override;
  ThingOrStatus<AppleEvent> createEvent(FourCharCode eventClass, FourCharCode eventID,
                                        const EventAddress& address) override;
};

}  // namespace halvorn
