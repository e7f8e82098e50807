#include "Platform/window/mac/MacScrollViews.h"

#include "Platform/running/mac/Conversions.h"
#include "Platform/window/mac/MacView.h"

namespace halvorn {
namespace {

// A clip view has the coordinates of its document: counted downwards, they are turned by the document's height.
NSView* coordinatesOf(NSClipView* view) { return [view documentView] != nil ? [view documentView] : view; }

}  // namespace

Rect MacClipView::bounds() const {
  return answered(Rect{}, [&] { return upwards(coordinatesOf(view_), [view_ bounds]); });
}

Point MacClipView::constrainScrollPoint(const Point& point) const {
  return answered(point, [&] {
    const NSSize size = [view_ bounds].size;
    NSView* const document = coordinatesOf(view_);
    const NSPoint wanted = ofView(document, {point.x, point.y, size.width, size.height}).origin;
    const NSPoint found = [view_ constrainScrollPoint:wanted];
    const Rect rect = upwards(document, NSMakeRect(found.x, found.y, size.width, size.height));
    return Point{rect.x, rect.y};
  });
}

void MacClipView::setBoundsOrigin(const Point& origin) {
  attempted([&] {
    const NSSize size = [view_ bounds].size;
    const NSRect wanted = ofView(coordinatesOf(view_), {origin.x, origin.y, size.width, size.height});
    // Of 10.5 and later; else at once.
    const id animator = [view_ respondsToSelector:@selector(animator)] ? [view_ animator] : view_;
    [(NSClipView*)animator setBoundsOrigin:wanted.origin];
  });
}

std::shared_ptr<ClipView> MacScrollView::contentView() {
  return answered(std::shared_ptr<ClipView>(),
                  [&] { return std::make_shared<MacClipView>([view_ contentView]); });
}

void MacScrollView::reflectScrolledClipView(ClipView& clipView) {
  const auto* const own = dynamic_cast<MacClipView*>(&clipView);
  if (own != nullptr) attempted([&] { [view_ reflectScrolledClipView:own->view()]; });
}

void MacScrollView::beginGrouping() {
  attempted([] { [NSAnimationContext beginGrouping]; });
}
void MacScrollView::endGrouping() {
  attempted([] { [NSAnimationContext endGrouping]; });
}

}  // namespace halvorn
