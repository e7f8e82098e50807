// The toolkit's scroll areas as scroll views.
//
// Thread: main. The area must outlive them; an animation under way belongs to the area.
#pragma once

#include <QAbstractScrollArea>
#include <QPointer>
#include <optional>

#include "Platform/window/ScrollViews.h"

namespace halvorn {

class QtAnimationContext : public AnimationContext {
 public:
  explicit QtAnimationContext(QAbstractScrollArea& area) : area_(area) {}
  void beginGrouping() override { ++depth_; }
  void endGrouping() override;

  // Scrolls there when the outermost group ends; at once when there is none.
  void scrollTo(const Point& origin);

 private:
  QAbstractScrollArea& area_;
  int depth_ = 0;
  std::optional<Point> asked_;
};

class QtClipView : public ClipView, private BoundsAnimator {
 public:
  // Without a context its animations are groups of their own.
  explicit QtClipView(QAbstractScrollArea& area, std::shared_ptr<QtAnimationContext> context = nullptr);
  Rect bounds() const override;
  Point constrainScrollPoint(const Point& point) const override;
  BoundsAnimator& animator() override { return *this; }

 private:
  void setBoundsOrigin(const Point& origin) override { context_->scrollTo(origin); }

  QAbstractScrollArea& area_;
  std::shared_ptr<QtAnimationContext> context_;
};

class QtScrollView : public ScrollView {
 public:
  explicit QtScrollView(QAbstractScrollArea& area);
  std::shared_ptr<ClipView> contentView() override;
  // The toolkit scrolls by its bars, so they are always where the clip view is.
  void reflectScrolledClipView(ClipView&) override {}
  AnimationContext& animationContext() override { return *context_; }

  // At once, as little as needed, the rectangle in the coordinates of the document; false for not at all.
  bool scrollToVisible(const Rect& rect);

 private:
  QAbstractScrollArea& area_;
  std::shared_ptr<QtAnimationContext> context_;
};

}  // namespace halvorn
