// Rules: a sheet is shown and the call returns at once; its delegate is told when the person has ended it (NSAlert,
// "beginSheetModalForWindow:modalDelegate:didEndSelector:contextInfo:"). GNUstep's call returns only then, so it is made
// from the run loop instead in programs with people before them; in others a test ends the sheet. Without one of its
// buttons it ends with a number below theirs.
#import <AppKit/AppKit.h>
#import <objc/runtime.h>

#include "tests/mac/frameworks/FakeMac.h"
#include "tests/mac/frameworks/FakeObjects.h"

@class KTSheetLater;

namespace {
IMP gnustepSheet = nullptr;
KTSheetLater* shown = nil;
}  // namespace

@interface KTSheetLater : NSObject {
 @public
  NSAlert* alert;
  NSWindow* window;
  id delegate;
  SEL ended;
  void* context;
}
- (void)begin;
- (void)endWithCode:(NSInteger)code;
@end
@implementation KTSheetLater
- (void)begin {
  reinterpret_cast<void (*)(id, SEL, NSWindow*, id, SEL, void*)>(gnustepSheet)(
      alert, @selector(beginSheetModalForWindow:modalDelegate:didEndSelector:contextInfo:), window, delegate,
      ended, context);
}
- (void)endWithCode:(NSInteger)code {
  const IMP told = [delegate methodForSelector:ended];
  reinterpret_cast<void (*)(id, SEL, NSAlert*, NSInteger, void*)>(told)(delegate, ended, alert, code,
                                                                        context);
}
- (void)dealloc {
  [alert release];
  [window release];
  [super dealloc];
}
@end

static void beginSheet(id self, SEL, NSWindow* window, id delegate, SEL ended, void* context) {
  KTSheetLater* const later = [[[KTSheetLater alloc] init] autorelease];
  later->alert = [self retain];
  later->window = [window retain];
  later->delegate = delegate;
  later->ended = ended;
  later->context = context;
  if (fakemac::state().hasRealPictures) {
    [later performSelector:@selector(begin) withObject:nil afterDelay:0];
  } else {
    shown = [later retain];
  }
}

@interface KTFakeSheets : NSObject
@end
@implementation KTFakeSheets
+ (void)load {
  const Class alert = objc_getClass("NSAlert");
  const SEL selector = @selector(beginSheetModalForWindow:modalDelegate:didEndSelector:contextInfo:);
  gnustepSheet = fakemac::methodBefore(alert, selector);
  fakemac::answerInstead(alert, selector, (IMP)beginSheet, "v@:@@:^v");
}
@end

namespace fakemac {

bool sheetIsUp() { return shown != nil; }

std::vector<std::string> sheetTexts() {
  std::vector<std::string> texts = {[[shown->alert messageText] UTF8String],
                                    [[shown->alert informativeText] UTF8String]};
  NSArray* const buttons = [shown->alert buttons];
  for (NSUInteger i = 0; i < [buttons count]; ++i)
    texts.emplace_back([[[buttons objectAtIndex:i] title] UTF8String]);
  return texts;
}

void endSheet(int button) {
  KTSheetLater* const sheet = shown;
  shown = nil;
  [sheet endWithCode:button < 0 ? -1000 : 1000 + button];
  [sheet release];
}

}  // namespace fakemac

// What is said to people who hear the window (NSAccessibilityAnnouncementRequestedNotification).
extern "C" void NSAccessibilityPostNotificationWithUserInfo(id, NSString* name, NSDictionary* said) {
  if (![name isEqual:NSAccessibilityAnnouncementRequestedNotification]) return;
  NSString* const text = [said objectForKey:NSAccessibilityAnnouncementKey];
  fakemac::state().announcements.emplace_back([text UTF8String]);
}
