#include "Platform/window/mac/MacView.h"

#include "Platform/running/mac/Conversions.h"
#include "Platform/window/mac/MacScrollViews.h"

namespace halvorn {

Rect upwards(NSView* view, NSRect rect) {
  const NSRect bounds = [view bounds];
  const CGFloat y = [view isFlipped] ? NSMaxY(bounds) - NSMaxY(rect) : rect.origin.y;
  return {rect.origin.x, y, rect.size.width, rect.size.height};
}

NSRect ofView(NSView* view, const Rect& rect) {
  const NSRect bounds = [view bounds];
  const CGFloat y = [view isFlipped] ? NSMaxY(bounds) - rect.y - rect.height : rect.y;
  return NSMakeRect(rect.x, y, rect.width, rect.height);
}

NSString* nameOfAppearance(AppearanceName name) {
  if (name == AppearanceName::Aqua) return NSAppearanceNameAqua;
  return name == AppearanceName::DarkAqua ? NSAppearanceNameDarkAqua : nil;
}

void MacView::setHidden(Hidden hidden) {
  attempted([&] { [view_ setHidden:hidden == Hidden::Yes]; });
  placeAgain();
}

Hidden MacView::isHidden() const {
  return answered(Hidden::No, [&] { return [view_ isHidden] ? Hidden::Yes : Hidden::No; });
}

void MacView::setAppearance(AppearanceName name) {
  appearance_ = name;
  attempted([&] {
    NSString* const wanted = nameOfAppearance(name);
    // Of 10.9 and later.
    if (![view_ respondsToSelector:@selector(setAppearance:)]) return;
    [view_ setAppearance:wanted == nil ? nil : [NSAppearance appearanceNamed:wanted]];
  });
}

std::shared_ptr<View> MacView::superview() {
  return answered(std::shared_ptr<View>(), [&]() -> std::shared_ptr<View> {
    NSView* const holder = [view_ superview];
    return holder != nil ? std::make_shared<MacView>(holder) : nullptr;
  });
}

void MacView::removeFromSuperviewWithoutNeedingDisplay() {
  attempted([&] { [view_ removeFromSuperviewWithoutNeedingDisplay]; });
}

void MacView::addSubview(View& subview, ViewPosition positioned, View* relativeTo) {
  const auto* const added = dynamic_cast<MacView*>(&subview);
  const auto* const sibling = dynamic_cast<MacView*>(relativeTo);
  if (added == nullptr || (relativeTo != nullptr && sibling == nullptr)) return;
  attempted([&] {
    [view_ addSubview:added->view()
           positioned:positioned == ViewPosition::Above ? NSWindowAbove : NSWindowBelow
           relativeTo:sibling != nullptr ? sibling->view() : nil];
  });
}

std::shared_ptr<ScrollView> MacView::enclosingScrollView() {
  return answered(std::shared_ptr<ScrollView>(), [&]() -> std::shared_ptr<ScrollView> {
    NSScrollView* const scrollView = [view_ enclosingScrollView];
    return scrollView != nil ? std::make_shared<MacScrollView>(scrollView) : nullptr;
  });
}

Rect MacView::visibleRect() const {
  return answered(Rect{}, [&] { return upwards(view_, [view_ visibleRect]); });
}

bool MacView::scrollRectToVisible(const Rect& rect) {
  return answered(false, [&] { return static_cast<bool>([view_ scrollRectToVisible:ofView(view_, rect)]); });
}

}  // namespace halvorn
