#include "Platform/processes/mac/MacApplicationEvents.h"

#import <Carbon/Carbon.h>

#include <utility>

namespace halvorn {

struct MacApplicationEvents::Installation {
  explicit Installation(std::function<void(int)> wanted) : handler(std::move(wanted)) {}
  ~Installation() {
    if (reference != nullptr) static_cast<void>(RemoveEventHandler(reference));
    DisposeEventHandlerUPP(routine);
  }
  Installation(const Installation&) = delete;
  Installation& operator=(const Installation&) = delete;

  static OSStatus told(EventHandlerCallRef, EventRef event, void* context) {
    static_cast<Installation*>(context)->handler(static_cast<int>(GetEventKind(event)));
    return noErr;
  }

  const std::function<void(int)> handler;
  const EventHandlerUPP routine = NewEventHandlerUPP(told);
  EventHandlerRef reference = nullptr;
};

MacApplicationEvents::MacApplicationEvents() = default;
MacApplicationEvents::~MacApplicationEvents() = default;

void MacApplicationEvents::installHandler(std::function<void(int kind)> handler) {
  installation_.reset();
  installation_ = std::make_unique<Installation>(std::move(handler));
  const EventTypeSpec types[] = {{kEventClassApplication, kEventAppLaunched},
                                 {kEventClassApplication, kEventAppTerminated},
                                 {kEventClassApplication, kEventAppFrontSwitched}};
  static_cast<void>(InstallEventHandler(GetApplicationEventTarget(), installation_->routine, 3, types,
                                        installation_.get(), &installation_->reference));
}

}  // namespace halvorn
