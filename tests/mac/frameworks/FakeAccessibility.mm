// Rules: an element can be made for any process id, an observer for a running application alone; call-backs come only
// while the observer's source stands in the run loop (AXUIElement.h, "AXObserverCreate"). Elements of one application are
// equal and hash alike.
#include <ApplicationServices/ApplicationServices.h>

#include <algorithm>

#include "tests/mac/frameworks/FakeMac.h"
#include "tests/mac/frameworks/FakeObjects.h"

@interface KTFakeElement : NSObject {
 @public
  pid_t pid;
}
@end
@implementation KTFakeElement
- (NSUInteger)hash {
  return static_cast<NSUInteger>(pid) * 31;
}
- (BOOL)isEqual:(id)other {
  return [other isKindOfClass:[KTFakeElement class]] && ((KTFakeElement*)other)->pid == pid;
}
@end

namespace {
struct Watch {
  KTFakeElement* element;
  std::string notification;
  void* context;
};
}  // namespace

@interface KTFakeObserver : NSObject {
 @public
  AXObserverCallback callback;
  std::vector<Watch> watches;
  BOOL isInRunLoop;
}
@end

static std::vector<KTFakeObserver*> observers;

@implementation KTFakeObserver
- (void)dealloc {
  std::erase(observers, self);
  for (const Watch& watch : watches) [watch.element release];
  [super dealloc];
}
@end

namespace fakemac {

void notify(std::int32_t pid, const std::string& notification, bool withElement) {
  const std::vector<KTFakeObserver*> all = observers;
  NSString* const name = [[NSString alloc] initWithUTF8String:notification.c_str()];
  for (KTFakeObserver* observer : all) {
    if (!observer->isInRunLoop) continue;
    const std::vector<Watch> watches = observer->watches;
    for (const Watch& watch : watches) {
      if (watch.element->pid != pid || watch.notification != notification) continue;
      observer->callback((AXObserverRef)observer, withElement ? (AXUIElementRef)watch.element : nullptr,
                         (CFStringRef)name, watch.context);
    }
  }
  [name release];
}

}  // namespace fakemac

extern "C" {

AXUIElementRef AXUIElementCreateApplication(pid_t pid) {
  const fakemac::Application* const application = fakemac::withPid(pid);
  if (application == nullptr) return nullptr;
  KTFakeElement* const element = [[KTFakeElement alloc] init];
  element->pid = pid;
  return static_cast<AXUIElementRef>(fakemac::given(element));
}

AXError AXUIElementGetPid(AXUIElementRef element, pid_t* pid) {
  *pid = ((KTFakeElement*)element)->pid;
  return kAXErrorSuccess;
}

AXError AXObserverCreate(pid_t pid, AXObserverCallback callback, AXObserverRef* observer) {
  const fakemac::Application* const application = fakemac::withPid(pid);
  if (fakemac::state().refusesObservers || application == nullptr || !application->isAccessible)
    return -25204;
  KTFakeObserver* const created = [[KTFakeObserver alloc] init];
  created->callback = callback;
  observers.push_back(created);
  *observer = (AXObserverRef)fakemac::given(created);
  return kAXErrorSuccess;
}

AXError AXObserverAddNotification(AXObserverRef observer, AXUIElementRef element, CFStringRef notification,
                                  void* context) {
  if (fakemac::state().refusesNotifications) return -25207;
  KTFakeObserver* const self = (KTFakeObserver*)observer;
  self->watches.push_back({[(KTFakeElement*)element retain], [(NSString*)notification UTF8String], context});
  return kAXErrorSuccess;
}

AXError AXObserverRemoveNotification(AXObserverRef observer, AXUIElementRef element,
                                     CFStringRef notification) {
  auto& watches = ((KTFakeObserver*)observer)->watches;
  const std::string name = [(NSString*)notification UTF8String];
  for (auto each = watches.begin(); each != watches.end(); ++each) {
    if (![each->element isEqual:(id)element] || each->notification != name) continue;
    [each->element release];
    watches.erase(each);
    return kAXErrorSuccess;
  }
  return -25210;
}

// The source is the observer's own: here the observer itself, given to nobody.
CFRunLoopSourceRef AXObserverGetRunLoopSource(AXObserverRef observer) { return (CFRunLoopSourceRef)observer; }

CFRunLoopRef CFRunLoopGetCurrent(void) { return (CFRunLoopRef)[NSRunLoop currentRunLoop]; }
void CFRunLoopAddSource(CFRunLoopRef, CFRunLoopSourceRef source, CFStringRef) {
  ((KTFakeObserver*)source)->isInRunLoop = YES;
}
void CFRunLoopRemoveSource(CFRunLoopRef, CFRunLoopSourceRef source, CFStringRef) {
  ((KTFakeObserver*)source)->isInRunLoop = NO;
}

}  // extern "C"
