#include "Platform/window/mac/ControlClasses.h"

#include <algorithm>
#include <utility>

#include "Platform/running/mac/Conversions.h"
#include "Platform/window/mac/MacView.h"

namespace halvorn {

NSColor* colorOf(const ColorPointer& color) {
  const auto components = color != nullptr ? color->CGColor() : std::nullopt;
  if (!components) return nil;
  return [NSColor colorWithDeviceRed:components->red
                               green:components->green
                                blue:components->blue
                               alpha:components->alpha];
}

}  // namespace halvorn

using halvorn::ColorPointer;

@implementation KTTextField

- (void)setAskedColor:(const ColorPointer&)color {
  delete color_;
  color_ = color != nullptr ? new ColorPointer(color) : nullptr;
  [self setNeedsDisplay:YES];
}

- (void)dealloc {
  delete color_;
  [super dealloc];
}

- (void)drawRect:(NSRect)dirty {
  NSColor* const color = color_ != nullptr ? halvorn::colorOf(*color_) : nil;
  if (color != nil && ![color isEqual:[self textColor]]) [self setTextColor:color];
  [super drawRect:dirty];
}

@end

@implementation KTDocumentView

- (void)setAskedBackground:(const ColorPointer&)color {
  delete background_;
  background_ = color != nullptr ? new ColorPointer(color) : nullptr;
  [self setNeedsDisplay:YES];
}

- (void)setAskedText:(const ColorPointer&)color {
  delete text_;
  text_ = color != nullptr ? new ColorPointer(color) : nullptr;
  [self setNeedsDisplay:YES];
}

- (void)setOpenLink:(std::function<void(const halvorn::Text&)>)openLink {
  delete openLink_;
  openLink_ = new std::function<void(const halvorn::Text&)>(std::move(openLink));
  [self setDelegate:self];
}

- (void)dealloc {
  delete background_;
  delete text_;
  delete openLink_;
  [super dealloc];
}

- (void)drawRect:(NSRect)dirty {
  NSColor* const background = background_ != nullptr ? halvorn::colorOf(*background_) : nil;
  NSColor* const text = text_ != nullptr ? halvorn::colorOf(*text_) : nil;
  if (background != nil && ![background isEqual:[self backgroundColor]]) [self setBackgroundColor:background];
  if (text != nil && ![text isEqual:[self textColor]]) [self setTextColor:text];
  [super drawRect:dirty];
}

- (BOOL)textView:(NSTextView*)view clickedOnLink:(id)link atIndex:(NSUInteger)index {
  static_cast<void>(view);
  static_cast<void>(index);
  NSString* const address = [link isKindOfClass:[NSURL class]] ? [link absoluteString] : link;
  const auto text = [address isKindOfClass:[NSString class]] ? halvorn::textOf(address) : std::nullopt;
  const bool isOpened =
      text && (text->hasPrefix("http://") || text->hasPrefix("https://") || text->hasPrefix("mailto:"));
  if (isOpened && openLink_ != nullptr && *openLink_) (*openLink_)(*text);
  return YES;
}

@end

@implementation KTAction

- (id)initWithAction:(std::function<void()>)action {
  self = [super init];
  if (self != nil) action_ = new std::function<void()>(std::move(action));
  return self;
}

- (void)dealloc {
  delete action_;
  [super dealloc];
}

- (void)perform:(id)sender {
  static_cast<void>(sender);
  if (*action_) (*action_)();
}

@end

@implementation KTBoxView

- (void)setBox:(halvorn::Box)box direction:(halvorn::Direction)direction {
  delete box_;
  box_ = new halvorn::Box(std::move(box));
  direction_ = direction;
  [self placeViews];
}

- (void)dealloc {
  delete box_;
  [super dealloc];
}

- (BOOL)isFlipped {
  return YES;
}

- (void)setFrameSize:(NSSize)size {
  [super setFrameSize:size];
  [self placeViews];
}

// In a scroll view it is as wide as what is seen, and at least as high.
- (void)placeViews {
  if (box_ == nullptr || isPlacing_) return;
  isPlacing_ = YES;
  NSScrollView* const scrollView = [self enclosingScrollView];
  if ([scrollView documentView] == self) {
    const NSSize seen = [scrollView contentSize];
    const double needed = halvorn::neededBy(*box_, seen.width).height;
    [self setFrame:NSMakeRect(0, 0, seen.width, std::max<double>(seen.height, needed))];
  }
  const NSRect bounds = [self bounds];
  halvorn::placeBox(*box_, {0, 0, bounds.size.width, bounds.size.height}, direction_);
  [self setNeedsDisplay:YES];
  isPlacing_ = NO;
}

- (void)resizeWithOldSuperviewSize:(NSSize)size {
  [super resizeWithOldSuperviewSize:size];
  [self placeViews];
}

@end

@implementation KTRule

- (void)drawRect:(NSRect)dirty {
  [[NSColor gridColor] set];
  NSRectFill(dirty);
}

@end
