// Rules: there is a current appearance while a view is drawn (NSAppearance, "currentAppearance"); an appearance fits its own
// name, and of a list it names what fits, or nothing; a color that is set is that of what is drawn from then on.
#import <AppKit/AppKit.h>
#import <objc/runtime.h>

#include "tests/mac/frameworks/FakeMac.h"
#include "tests/mac/frameworks/FakeObjects.h"

using fakemac::state;

@interface KTFakeAppearance : NSAppearance {
  NSString* name_;
}
@end
@implementation KTFakeAppearance
- (id)initWithAppearanceName:(NSString*)name {
  self = [super init];
  if (self != nil) name_ = [name retain];
  ++state().liveAppearances;
  return self;
}
- (void)dealloc {
  --state().liveAppearances;
  [name_ release];
  [super dealloc];
}
- (NSString*)bestMatchFromAppearancesWithNames:(NSArray*)names {
  if (state().raisesExceptions) [NSException raise:NSGenericException format:@"no match"];
  return [names containsObject:name_] ? name_ : nil;
}
@end

@interface KTFakeColor : NSObject {
 @public
  fakemac::Color color;
}
@end
@implementation KTFakeColor
- (void)setStroke {
  state().strokeColor = color;
}
- (void)setFill {
  state().fillColor = color;
}
@end

@interface KTFakeApplication : NSObject
@end

namespace {

id appearanceNamed(const std::string& name) {
  if (name.empty()) return nil;
  NSString* const known = [NSString stringWithUTF8String:("NSAppearanceName" + name).c_str()];
  return [[[KTFakeAppearance alloc] initWithAppearanceName:known] autorelease];
}
id currentAppearance(id, SEL) { return appearanceNamed(state().currentAppearance); }
id sharedApplication(id, SEL) {
  static KTFakeApplication* const application = [[KTFakeApplication alloc] init];
  return application;
}
id deviceColor(id, SEL, CGFloat red, CGFloat green, CGFloat blue, CGFloat alpha) {
  KTFakeColor* const made = [[[KTFakeColor alloc] init] autorelease];
  made->color = {static_cast<double>(red), static_cast<double>(green), static_cast<double>(blue),
                 static_cast<double>(alpha)};
  return made;
}

}  // namespace

@implementation KTFakeApplication
+ (void)load {
  fakemac::answerInstead(object_getClass(objc_getClass("NSAppearance")), @selector(currentAppearance),
                         (IMP)currentAppearance, "@@:");
  fakemac::answerInstead(object_getClass(objc_getClass("NSApplication")), @selector(sharedApplication),
                         (IMP)sharedApplication, "@@:");
  fakemac::answerInstead(object_getClass(objc_getClass("NSColor")),
                         @selector(colorWithDeviceRed:green:blue:alpha:), (IMP)deviceColor, "@@:dddd");
}
- (NSAppearance*)effectiveAppearance {
  return appearanceNamed(state().applicationAppearance);
}
@end
