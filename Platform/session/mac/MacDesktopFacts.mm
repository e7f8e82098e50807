#include "Platform/session/mac/MacDesktopFacts.h"

#import <AppKit/AppKit.h>
#import <Carbon/Carbon.h>
#import <IOKit/IOKitLib.h>

#include <utility>

#include "Platform/running/mac/Conversions.h"
#include "Platform/running/mac/Held.h"

namespace halvorn {
namespace {

// An object of the registry, released at the end.
class RegistryObject {
 public:
  explicit RegistryObject(io_object_t object) : object_(object) {}
  ~RegistryObject() {
    if (object_ != 0) static_cast<void>(IOObjectRelease(object_));
  }
  RegistryObject(const RegistryObject&) = delete;
  RegistryObject& operator=(const RegistryObject&) = delete;
  [[nodiscard]] io_object_t get() const { return object_; }

 private:
  io_object_t object_;
};

io_iterator_t inputServices() {
  io_iterator_t found = 0;
  // The question takes the dictionary over.
  const auto status =
      IOServiceGetMatchingServices(kIOMasterPortDefault, IOServiceMatching("IOHIDSystem"), &found);
  return status == KERN_SUCCESS ? found : 0;
}

}  // namespace

struct MacDesktopFacts::Installation {
  explicit Installation(MenuBarHandler wanted) : handler(std::move(wanted)) {}
  ~Installation() {
    if (reference != nullptr) static_cast<void>(RemoveEventHandler(reference));
    DisposeEventHandlerUPP(routine);
  }
  Installation(const Installation&) = delete;
  Installation& operator=(const Installation&) = delete;

  static OSStatus told(EventHandlerCallRef, EventRef event, void* context) {
    const MenuBarEvent menuBarEvent = {GetEventClass(event), static_cast<int>(GetEventKind(event))};
    const EventAnswer answer = static_cast<Installation*>(context)->handler(menuBarEvent);
    return answer == EventAnswer::Handled ? static_cast<OSStatus>(noErr)
                                          : static_cast<OSStatus>(eventNotHandledErr);
  }

  const MenuBarHandler handler;
  const EventHandlerUPP routine = NewEventHandlerUPP(told);
  EventHandlerRef reference = nullptr;
};

MacDesktopFacts::MacDesktopFacts() = default;
MacDesktopFacts::~MacDesktopFacts() = default;

std::optional<std::int64_t> MacDesktopFacts::nanosecondsSinceLastInput() {
  return answered(std::optional<std::int64_t>(), []() -> std::optional<std::int64_t> {
    const RegistryObject services(inputServices());
    if (services.get() == 0) return std::nullopt;
    const RegistryObject service(IOIteratorNext(services.get()));
    Held<CFMutableDictionaryRef> properties;
    if (service.get() == 0) return std::nullopt;
    if (IORegistryEntryCreateCFProperties(service.get(), properties.out(), nullptr, 0) != KERN_SUCCESS)
      return std::nullopt;
    const id idle = [(NSDictionary*)properties.get() objectForKey:@"HIDIdleTime"];
    if (![idle isKindOfClass:[NSNumber class]]) return std::nullopt;
    return static_cast<std::int64_t>([(NSNumber*)idle longLongValue]);
  });
}

std::optional<std::int64_t> MacDesktopFacts::clipboardChangeCount() {
  return answered(std::optional<std::int64_t>(), [] {
    return std::optional(static_cast<std::int64_t>([[NSPasteboard generalPasteboard] changeCount]));
  });
}

bool MacDesktopFacts::installMenuBarHandler(MenuBarHandler handler) {
  installation_.reset();
  auto installation = std::make_unique<Installation>(std::move(handler));
  const EventTypeSpec types[] = {{kEventClassMenu, kEventMenuBarShown},
                                 {kEventClassMenu, kEventMenuBarHidden}};
  const OSStatus status = InstallEventHandler(GetEventDispatcherTarget(), installation->routine, 2, types,
                                              installation.get(), &installation->reference);
  if (status == noErr) installation_ = std::move(installation);
  return status == noErr;
}

std::optional<int> MacDesktopFacts::controlTint() {
  return answered(std::optional<int>(),
                  [] { return std::optional(static_cast<int>([NSColor currentControlTint])); });
}

}  // namespace halvorn
