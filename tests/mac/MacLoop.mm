#include "tests/mac/MacLoop.h"

#import <Foundation/Foundation.h>

namespace halvorn {

bool serveMacLoopUntil(const std::function<bool()>& condition, double seconds) {
  NSDate* const end = [[NSDate alloc] initWithTimeIntervalSinceNow:seconds];
  bool holds = condition();
  while (!holds && [end timeIntervalSinceNow] > 0) {
    const MacPool pool;
    [[NSRunLoop currentRunLoop] runMode:NSDefaultRunLoopMode
                             beforeDate:[NSDate dateWithTimeIntervalSinceNow:0.01]];
    holds = condition();
  }
  [end release];
  return holds;
}

int liveInstances(const char* className) {
  GSDebugAllocationActive(YES);
  return GSDebugAllocationCount(NSClassFromString([NSString stringWithUTF8String:className]));
}

MacPool::MacPool() : pool_([[NSAutoreleasePool alloc] init]) {}
MacPool::~MacPool() { [static_cast<NSAutoreleasePool*>(pool_) release]; }

}  // namespace halvorn
