// Rules: what is set through an animator is reached over time, a later target takes the place of an earlier one, and what is
// asked for in a group begins when the group ends (NSAnimationContext; NSAnimatablePropertyContainer). GNUstep's views have
// no animator. Before people there is no time: everything is reached at once.
#import <AppKit/AppKit.h>
#import <objc/runtime.h>

#include <map>

#include "tests/mac/frameworks/FakeMac.h"
#include "tests/mac/frameworks/FakeObjects.h"

namespace {

struct Target {
  NSView* view;
  NSPoint origin;
};
std::map<const void*, Target>& targets() {
  static std::map<const void*, Target> all;
  return all;
}

}  // namespace

@interface KTFakeAnimator : NSObject {
 @public
  NSView* view;
}
- (void)setBoundsOrigin:(NSPoint)origin;
@end
@implementation KTFakeAnimator
- (void)setBoundsOrigin:(NSPoint)origin {
  if (fakemac::state().hasRealPictures) {
    [view setBoundsOrigin:origin];
    return;
  }
  if (targets().count(view) == 0) [view retain];
  targets()[view] = {view, origin};
}
- (void)dealloc {
  [view release];
  [super dealloc];
}
@end

static id animatorOf(id self, SEL) {
  KTFakeAnimator* const animator = [[[KTFakeAnimator alloc] init] autorelease];
  animator->view = [self retain];
  return animator;
}

@interface KTFakeAnimations : NSObject
@end
@implementation KTFakeAnimations
+ (void)load {
  fakemac::answerInstead(objc_getClass("NSView"), @selector(animator), (IMP)animatorOf, "@@:");
}
@end

namespace fakemac {

bool isAnimating() { return !targets().empty(); }

void finishAnimations() {
  const auto all = targets();
  targets().clear();
  for (const auto& [place, target] : all) {
    [target.view setBoundsOrigin:target.origin];
    [target.view release];
  }
}

}  // namespace fakemac
