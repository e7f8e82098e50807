#import <AppKit/AppKit.h>

#include <vector>

#include "Platform/window/mac/MacView.h"
#include "ViewWorlds.h"
#include "tests/mac/MacLoop.h"
#include "tests/mac/frameworks/FakeMac.h"

namespace halvorn {

struct MacViewWorld::Parts {
  MacPool pool;
  NSWindow* window = nil;
  NSScrollView* scrollView = nil;
  NSView* holder = nil;
  std::unique_ptr<MacView> document;
  std::unique_ptr<MacView> part;
  std::unique_ptr<MacView> outside;
  std::vector<std::unique_ptr<MacView>> siblings;
};

namespace {

NSView* viewWithFrame(NSRect frame) { return [[[NSView alloc] initWithFrame:frame] autorelease]; }

}  // namespace

MacViewWorld::MacViewWorld() {
  fakemac::reset();
  [NSApplication sharedApplication];
  parts_ = std::make_unique<Parts>();
  parts_->window = [[NSWindow alloc] initWithContentRect:NSMakeRect(50, 50, 400, 300)
                                               styleMask:NSTitledWindowMask
                                                 backing:NSBackingStoreBuffered
                                                   defer:NO];
  [parts_->window setReleasedWhenClosed:NO];
  NSView* const content = [parts_->window contentView];
  parts_->scrollView = [[[NSScrollView alloc] initWithFrame:NSMakeRect(10, 10, 200, 100)] autorelease];
  [parts_->scrollView setBorderType:NSNoBorder];
  NSView* const document = viewWithFrame(NSMakeRect(0, 0, 1000, 2000));
  NSView* const part = viewWithFrame(NSMakeRect(0, 1000, 500, 500));
  [document addSubview:part];
  [parts_->scrollView setDocumentView:document];
  parts_->holder = viewWithFrame(NSMakeRect(220, 10, 100, 100));
  [content addSubview:parts_->scrollView];
  [content addSubview:parts_->holder];
  for (int i = 0; i < 3; ++i) {
    NSView* const sibling = viewWithFrame(NSMakeRect(0, 0, 50, 50));
    [parts_->holder addSubview:sibling];
    parts_->siblings.push_back(std::make_unique<MacView>(sibling));
  }
  parts_->document = std::make_unique<MacView>(document);
  parts_->part = std::make_unique<MacView>(part);
  // A view that nothing holds.
  parts_->outside = std::make_unique<MacView>(viewWithFrame(NSMakeRect(0, 0, 100, 100)));
}

MacViewWorld::~MacViewWorld() {
  fakemac::finishAnimations();
  [parts_->window release];
}

View& MacViewWorld::document() { return *parts_->document; }
View& MacViewWorld::part() { return *parts_->part; }
View& MacViewWorld::outside() { return *parts_->outside; }
void MacViewWorld::placeAt(const Point& origin) {
  fakemac::finishAnimations();
  NSClipView* const clip = [parts_->scrollView contentView];
  [clip setBoundsOrigin:NSMakePoint(origin.x, origin.y)];
  [parts_->scrollView reflectScrolledClipView:clip];
}
Point MacViewWorld::origin() {
  const NSPoint origin = [[parts_->scrollView contentView] bounds].origin;
  return {origin.x, origin.y};
}
bool MacViewWorld::isAnimating() { return fakemac::isAnimating(); }
void MacViewWorld::finishAnimations() { fakemac::finishAnimations(); }
View& MacViewWorld::sibling(std::size_t index) { return *parts_->siblings[index]; }

std::string MacViewWorld::order() {
  std::string order;
  NSArray* const views = [parts_->holder subviews];
  for (NSUInteger i = 0; i < [views count]; ++i) {
    for (std::size_t number = 0; number < parts_->siblings.size(); ++number) {
      if (parts_->siblings[number]->view() == [views objectAtIndex:i]) order += std::to_string(number);
    }
  }
  return order;
}

}  // namespace halvorn
