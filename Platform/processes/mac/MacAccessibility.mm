#include "Platform/processes/mac/MacAccessibility.h"

#include <string>
#include <utility>

#include "Platform/processes/mac/SerialNumbers.h"
#include "Platform/running/mac/Conversions.h"
#include "Platform/running/mac/Held.h"

namespace halvorn {
namespace {

class MacElement : public AccessibilityElement {
 public:
  // Takes over the reference.
  explicit MacElement(AXUIElementRef reference) : reference_(reference) {}
  [[nodiscard]] AXUIElementRef get() const { return reference_.get(); }
  [[nodiscard]] Text reference() const override {
    pid_t pid = 0;
    static_cast<void>(AXUIElementGetPid(reference_.get(), &pid));
    return Text(std::to_string(pid) + "/" + std::to_string(CFHash(reference_.get())));
  }

 private:
  Held<AXUIElementRef> reference_;
};

std::optional<pid_t> pidOf(ProcessSerialNumber number) {
  const ::ProcessSerialNumber asked = systemNumber(number);
  pid_t pid = 0;
  return GetProcessPID(&asked, &pid) == noErr ? std::optional(pid) : std::nullopt;
}

class MacObserver : public AccessibilityObserver {
 public:
  explicit MacObserver(Accessibility::Callback callback) : callback_(std::move(callback)) {}
  ~MacObserver() override { leave(); }
  MacObserver(const MacObserver&) = delete;
  MacObserver& operator=(const MacObserver&) = delete;

  [[nodiscard]] bool create(pid_t pid) {
    return AXObserverCreate(pid, told, observer_.out()) == kAXErrorSuccess;
  }

  void addToRunLoop() override {
    CFRunLoopAddSource(CFRunLoopGetCurrent(), AXObserverGetRunLoopSource(observer_.get()),
                       kCFRunLoopCommonModes);
    isInRunLoop_ = true;
  }
  void removeFromRunLoop() override { leave(); }
  [[nodiscard]] bool add(const AccessibilityElement& element, const Text& notification) override {
    return answered(false, [&] {
      return AXObserverAddNotification(observer_.get(), systemElement(element),
                                       (CFStringRef)stringOf(notification), this) == kAXErrorSuccess;
    });
  }
  void remove(const AccessibilityElement& element, const Text& notification) override {
    attempted([&] {
      static_cast<void>(AXObserverRemoveNotification(observer_.get(), systemElement(element),
                                                     (CFStringRef)stringOf(notification)));
    });
  }

 private:
  // Whoever holds an element had it from here.
  static AXUIElementRef systemElement(const AccessibilityElement& element) {
    return static_cast<const MacElement&>(element).get();
  }
  static void told(AXObserverRef, AXUIElementRef element, CFStringRef notification, void* context) {
    const MacObserver& self = *static_cast<MacObserver*>(context);
    AccessibilityElementPointer watched;
    if (element != nullptr) {
      watched = std::make_shared<MacElement>(static_cast<AXUIElementRef>(CFRetain(element)));
    }
    self.callback_(watched, textOf((NSString*)notification).value_or(Text()));
  }
  void leave() {
    if (!isInRunLoop_) return;
    isInRunLoop_ = false;
    CFRunLoopRemoveSource(CFRunLoopGetCurrent(), AXObserverGetRunLoopSource(observer_.get()),
                          kCFRunLoopCommonModes);
  }

  const Accessibility::Callback callback_;
  Held<AXObserverRef> observer_;
  bool isInRunLoop_ = false;
};

}  // namespace

AccessibilityElementPointer MacAccessibility::createApplicationElement(ProcessSerialNumber number) {
  const auto pid = pidOf(number);
  const AXUIElementRef element = pid ? AXUIElementCreateApplication(*pid) : nullptr;
  return element != nullptr ? std::make_shared<MacElement>(element) : nullptr;
}

std::unique_ptr<AccessibilityObserver> MacAccessibility::createObserver(ProcessSerialNumber number,
                                                                        Callback callback) {
  const auto pid = pidOf(number);
  auto observer = std::make_unique<MacObserver>(std::move(callback));
  return pid && observer->create(*pid) ? std::move(observer) : nullptr;
}

}  // namespace halvorn
