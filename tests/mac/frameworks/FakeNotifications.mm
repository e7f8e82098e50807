// Rules: whoever observes is not kept, and has to be taken out before it is gone (NSNotificationCenter,
// "addObserver:selector:name:object:"). Centers are GNUstep's own; counted are observers of this program's classes.
#import <Foundation/Foundation.h>
#import <objc/runtime.h>

#include <map>

#include "tests/mac/frameworks/FakeMac.h"
#include "tests/mac/frameworks/FakeObjects.h"

namespace {

IMP gnustepAdd = nullptr;
IMP gnustepRemove = nullptr;
std::map<const void*, int>& observers() {
  static std::map<const void*, int> all;
  return all;
}

bool isOurs(id observer) { return [NSStringFromClass([observer class]) hasPrefix:@"KT"]; }

void added(id self, SEL selector, id observer, SEL told, NSString* name, id object) {
  if (isOurs(observer)) ++observers()[observer];
  reinterpret_cast<void (*)(id, SEL, id, SEL, NSString*, id)>(gnustepAdd)(self, selector, observer, told,
                                                                          name, object);
}

void removed(id self, SEL selector, id observer, NSString* name, id object) {
  // The adapters take out all that an observer was put in for.
  if (name == nil && object == nil) observers().erase(observer);
  reinterpret_cast<void (*)(id, SEL, id, NSString*, id)>(gnustepRemove)(self, selector, observer, name,
                                                                        object);
}

void removedAltogether(id self, SEL, id observer) {
  [(NSNotificationCenter*)self removeObserver:observer name:nil object:nil];
}

}  // namespace

@interface KTFakeNotifications : NSObject
@end
@implementation KTFakeNotifications
+ (void)load {
  const Class center = objc_getClass("NSNotificationCenter");
  const SEL add = @selector(addObserver:selector:name:object:);
  const SEL remove = @selector(removeObserver:name:object:);
  gnustepAdd = fakemac::methodBefore(center, add);
  gnustepRemove = fakemac::methodBefore(center, remove);
  fakemac::answerInstead(center, add, (IMP)added, "v@:@:@@");
  fakemac::answerInstead(center, remove, (IMP)removed, "v@:@@@");
  fakemac::answerInstead(center, @selector(removeObserver:), (IMP)removedAltogether, "v@:@");
}
@end

namespace fakemac {

std::size_t installedObservers() { return observers().size(); }

}  // namespace fakemac
