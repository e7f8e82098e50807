// Rules: a function named Create or Copy gives a reference that its caller releases (Memory Management Programming Guide
// for Core Foundation, "The Create Rule"); releasing NULL is a programming error that ends the program (CFRelease).
#include "tests/mac/frameworks/FakeObjects.h"

#import <objc/runtime.h>

#include <cstdio>
#include <cstdlib>
#include <set>

#include "tests/mac/frameworks/FakeMac.h"

namespace {

std::multiset<CFTypeRef>& references() {
  static std::multiset<CFTypeRef> all;
  return all;
}
int others = 0;

}  // namespace

namespace fakemac {

CFTypeRef given(id object) {
  references().insert((CFTypeRef)object);
  return (CFTypeRef)object;
}
void countGiven() { ++others; }
void countTaken() {
  if (--others < 0) releasedTooOften("a descriptor or routine");
}
void releasedTooOften(const char* what) {
  std::fprintf(stderr, "released, but never given: %s\n", what);
  std::abort();
}
void endForMisuse(const char* what) {
  std::fprintf(stderr, "no caller may do this: %s\n", what);
  std::abort();
}
IMP methodBefore(Class owner, SEL selector) {
  NSAutoreleasePool* const pool = [[NSAutoreleasePool alloc] init];
  const IMP method = class_getMethodImplementation(owner, selector);
  [pool release];
  return method;
}
void answerInstead(Class owner, SEL selector, IMP function, const char* types) {
  // Replacing a method that is inherited would replace it for everybody.
  if (!class_addMethod(owner, selector, function, types))
    class_replaceMethod(owner, selector, function, types);
}
int liveObjects() { return static_cast<int>(references().size()) + others; }

}  // namespace fakemac

extern "C" {

const CFStringRef kCFRunLoopCommonModes = (CFStringRef) @"kCFRunLoopCommonModes";

void CFRelease(CFTypeRef object) {
  const auto found = references().find(object);
  if (found == references().end()) fakemac::releasedTooOften(object == nullptr ? "NULL" : "an object");
  references().erase(found);
  [(id)object release];
}

CFTypeRef CFRetain(CFTypeRef object) { return fakemac::given([(id)object retain]); }

CFHashCode CFHash(CFTypeRef object) { return [(id)object hash]; }

}  // extern "C"
