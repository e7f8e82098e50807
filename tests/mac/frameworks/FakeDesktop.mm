// Rules: what the registry gives is released object by object, and a matching dictionary belongs to whoever asks with it
// (IOKitLib.h); idle time is a number of nanoseconds; Gestalt answers a status for what it does not know; statfs gives the
// type by name (statfs(2)).
#import <AppKit/AppKit.h>
#include <Carbon/Carbon.h>
#include <IOKit/IOKitLib.h>
#include <errno.h>
#import <objc/runtime.h>
#include <sys/mount.h>
#include <unistd.h>

#include <cstring>

#include "tests/mac/frameworks/FakeMac.h"
#include "tests/mac/frameworks/FakeObjects.h"

using fakemac::state;

namespace {
constexpr io_object_t kIterator = 7;
constexpr io_object_t kService = 8;
bool isServiceGiven = false;
}  // namespace

extern "C" {

const mach_port_t kIOMasterPortDefault = 0;

CFMutableDictionaryRef IOServiceMatching(const char* name) {
  NSDictionary* const matching = [[NSMutableDictionary alloc]
      initWithObjectsAndKeys:[NSString stringWithUTF8String:name], @"IOProviderClass", nil];
  return (CFMutableDictionaryRef)fakemac::given(matching);
}

kern_return_t IOServiceGetMatchingServices(mach_port_t port, CFDictionaryRef matching, io_iterator_t* found) {
  const bool isInput = [[(NSDictionary*)matching objectForKey:@"IOProviderClass"] isEqual:@"IOHIDSystem"] &&
                       port == kIOMasterPortDefault;
  CFRelease(matching);
  if (!isInput || state().registryFails) return 1;
  *found = kIterator;
  isServiceGiven = !state().hasInputService;
  fakemac::countGiven();
  return KERN_SUCCESS;
}

io_object_t IOIteratorNext(io_iterator_t iterator) {
  if (iterator != kIterator || isServiceGiven) return 0;
  isServiceGiven = true;
  fakemac::countGiven();
  return kService;
}

kern_return_t IORegistryEntryCreateCFProperties(io_registry_entry_t entry, CFMutableDictionaryRef* properties,
                                                CFAllocatorRef allocator, IOOptionBits options) {
  if (entry != kService || allocator != nullptr || options != 0 || state().propertiesFail) return 1;
  NSMutableDictionary* const dictionary = [[NSMutableDictionary alloc] init];
  if (state().idleNanoseconds)
    [dictionary setObject:[NSNumber numberWithLongLong:*state().idleNanoseconds] forKey:@"HIDIdleTime"];
  if (state().idleIsText) [dictionary setObject:@"long" forKey:@"HIDIdleTime"];
  *properties = (CFMutableDictionaryRef)fakemac::given(dictionary);
  return KERN_SUCCESS;
}

kern_return_t IOObjectRelease(io_object_t object) {
  if (object != kIterator && object != kService) fakemac::releasedTooOften("an object of the registry");
  fakemac::countTaken();
  return KERN_SUCCESS;
}

OSErr Gestalt(OSType selector, SInt32* answer) {
  const auto found = state().gestalt.find(selector);
  if (found == state().gestalt.end()) return -5551;
  *answer = found->second;
  return noErr;
}

int statfs(const char* path, struct statfs* record) {
  if (::access(path, F_OK) != 0) return -1;
  std::memset(record, 0, sizeof(*record));
  std::memcpy(record->f_fstypename, "apfs", 5);
  return 0;
}

}  // extern "C"

@interface KTFakePasteboard : NSObject
@end
@implementation KTFakePasteboard
- (int)changeCount {
  if (state().raisesExceptions) [NSException raise:NSGenericException format:@"no pasteboard"];
  return static_cast<int>(state().pasteboardChanges);
}
@end

static id generalPasteboard(id, SEL) {
  static KTFakePasteboard* const pasteboard = [[KTFakePasteboard alloc] init];
  return pasteboard;
}

static NSControlTint currentControlTint(id, SEL) { return static_cast<NSControlTint>(state().controlTint); }

// Notifications of the desktop come from within this process.
static id distributedCenter(id, SEL) {
  static NSNotificationCenter* const center = [[NSNotificationCenter alloc] init];
  return center;
}

// The settings of the person, and nothing of this computer.
static id stringForKey(id, SEL, NSString* key) {
  const auto found = state().settings.find([key UTF8String]);
  return found == state().settings.end() ? nil : [NSString stringWithUTF8String:found->second.c_str()];
}

@interface KTFakeDesktopClasses : NSObject
@end
@implementation KTFakeDesktopClasses
+ (void)load {
  fakemac::answerInstead(object_getClass(objc_getClass("NSPasteboard")), @selector(generalPasteboard),
                         (IMP)generalPasteboard, "@@:");
  fakemac::answerInstead(object_getClass(objc_getClass("NSColor")), @selector(currentControlTint),
                         (IMP)currentControlTint, "i@:");
  fakemac::answerInstead(object_getClass(objc_getClass("NSDistributedNotificationCenter")),
                         @selector(defaultCenter), (IMP)distributedCenter, "@@:");
  fakemac::answerInstead(objc_getClass("NSUserDefaults"), @selector(stringForKey:), (IMP)stringForKey,
                         "@@:@");
}
@end

namespace fakemac {

void postDistributed(const std::string& name) {
  NSAutoreleasePool* const pool = [[NSAutoreleasePool alloc] init];
  [[NSDistributedNotificationCenter defaultCenter]
      postNotificationName:[NSString stringWithUTF8String:name.c_str()]
                    object:nil];
  [pool release];
}

}  // namespace fakemac
