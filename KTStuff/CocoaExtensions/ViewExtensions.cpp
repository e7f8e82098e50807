#include "KTStuff/CocoaExtensions/ViewExtensions.h"

#include <memory>

#include "KTStuff/KTClasses/KTAvailability.h"
#include "Platform/window/Views.h"

namespace halvorn::KTViewExtensions {

namespace {

// What is outside of every scroll view has neither a scroll view nor a clip view.
struct Enclosure {
  explicit Enclosure(View& view)
      : scrollView(view.enclosingScrollView()), clipView(scrollView ? scrollView->contentView() : nullptr) {}

  void scrollAnimatedTo(const Point& origin) const {
    if (!clipView) return;
    scrollView->animationContext().beginGrouping();
    clipView->animator().setBoundsOrigin(origin);
    scrollView->animationContext().endGrouping();
    scrollView->reflectScrolledClipView(*clipView);
  }

  std::shared_ptr<ScrollView> scrollView;
  std::shared_ptr<ClipView> clipView;
};

}  // namespace

void bringToFrontInsideSuperView(View& view) {
  const std::shared_ptr<View> superview = view.superview();
  // Being taken out does not end a view, so nothing has to hold it meanwhile.
  view.removeFromSuperviewWithoutNeedingDisplay();
  if (superview) superview->addSubview(view, ViewPosition::Above, nullptr);
}

bool animatedVerticalScrollRectToVisible(View& view, Rect rect, PreferTop preferTop) {
  const Enclosure enclosure(view);
  const Rect visible = view.visibleRect();
  const Rect clipBounds = enclosure.clipView ? enclosure.clipView->bounds() : Rect{};

  if (rect.height > visible.height) {
    if (preferTop == PreferTop::Yes) rect.y += rect.height - visible.height;
    rect.height = visible.height;
  }

  double delta = 0.0;
  if (visible.y > rect.y) {
    delta = rect.y - visible.y;
  } else if (rect.y + rect.height >= visible.y + visible.height) {
    // KEEP: an exact fit counts as not seen and scrolls by zero.
    delta = (rect.y + rect.height) - (visible.y + visible.height);
  } else {
    return false;
  }

  // KEEP: single precision, so that far down in a long document the place is a little beside the one asked.
  const auto newY = static_cast<float>(clipBounds.y + delta);
  // KEEP: a horizontal offset is not kept.
  enclosure.scrollAnimatedTo({0.0, newY});
  return true;
}

bool scrollRectToVisible(View& view, const Rect& rect, Animated) {
  // KEEP: never animated.
  return view.scrollRectToVisible(rect);
}

void scrollPointAnimated(View& view, const Point& point) {
  const Enclosure enclosure(view);
  if (enclosure.clipView) enclosure.scrollAnimatedTo(enclosure.clipView->constrainScrollPoint(point));
}

void useLightAquaAppearance(View& view, LightAqua light, const SystemFacts& system) {
  if (!hasAppearances(system)) return;
  view.setAppearance(light == LightAqua::Yes ? AppearanceName::Aqua : AppearanceName::Inherited);
}

}  // namespace halvorn::KTViewExtensions
