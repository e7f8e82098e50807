// Views that hold each other, and a document in a place that is too small for it.
//
//   Calls calls;
//   FakeScrollView scrollView(calls, {1000, 2000}, {200, 100});   // the lower left corner is seen
//   FakeDocument document(calls, scrollView);                      // all of the document as a view
//   scrollView.finishAnimations();
#pragma once

#include <algorithm>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "tests/fakes/FakeWindow.h"

namespace halvorn {

// A view in a tree. Its subviews do not belong to it.
class FakeTreeView : public FakeView, public std::enable_shared_from_this<FakeTreeView> {
 public:
  using FakeView::FakeView;

  std::shared_ptr<View> superview() override {
    record("superview");
    return superview_ != nullptr ? superview_->shared_from_this() : nullptr;
  }
  void removeFromSuperviewWithoutNeedingDisplay() override {
    record("removeFromSuperviewWithoutNeedingDisplay");
    if (superview_ != nullptr) std::erase(superview_->subviews_, this);
    superview_ = nullptr;
  }
  void addSubview(View& subview, ViewPosition positioned, View* relativeTo) override {
    record("addSubview", std::string(positioned == ViewPosition::Above ? "above" : "below") +
                             (relativeTo == nullptr ? " all" : " one"));
    auto& added = dynamic_cast<FakeTreeView&>(subview);
    if (added.superview_ != nullptr) std::erase(added.superview_->subviews_, &added);
    auto at = std::find(subviews_.begin(), subviews_.end(), dynamic_cast<FakeTreeView*>(relativeTo));
    if (positioned == ViewPosition::Above) {
      at = relativeTo != nullptr && at != subviews_.end() ? at + 1 : subviews_.end();
    } else if (relativeTo == nullptr) {
      at = subviews_.begin();
    }
    subviews_.insert(at, &added);
    added.superview_ = this;
  }

  FakeTreeView* superview_ = nullptr;
  std::vector<FakeTreeView*> subviews_;  // the last one in front
};

struct FakeSize {
  double width = 0.0;
  double height = 0.0;
};

class FakeScrollView : public ScrollView {
 public:
  FakeScrollView(Calls& calls, FakeSize document, FakeSize place)
      : document_(document), place_(place), calls_(calls), clipView_(std::make_shared<Clip>(*this)) {}

  std::shared_ptr<ClipView> contentView() override { return clipView_; }
  void reflectScrolledClipView(ClipView& clip) override {
    calls_.push_back(&clip == clipView_.get() ? "reflectScrolledClipView" : "reflect another clip view");
  }
  AnimationContext& animationContext() override { return context_; }

  [[nodiscard]] bool isAnimating() const { return target_.has_value(); }
  void finishAnimations() {
    if (target_) origin_ = clipView_->constrainScrollPoint(*target_);
    target_.reset();
  }

  FakeSize document_;
  FakeSize place_;
  Point origin_;
  std::optional<Point> target_;  // of the animation that has begun
  Calls& calls_;

 private:
  class Clip : public ClipView, private BoundsAnimator {
   public:
    explicit Clip(FakeScrollView& scroll) : scroll_(scroll) {}
    Rect bounds() const override {
      return {scroll_.origin_.x, scroll_.origin_.y, scroll_.place_.width, scroll_.place_.height};
    }
    Point constrainScrollPoint(const Point& point) const override {
      return {std::clamp(point.x, 0.0, std::max(0.0, scroll_.document_.width - scroll_.place_.width)),
              std::clamp(point.y, 0.0, std::max(0.0, scroll_.document_.height - scroll_.place_.height))};
    }
    BoundsAnimator& animator() override { return *this; }
    void setBoundsOrigin(const Point& origin) override {
      scroll_.calls_.push_back("animate to " + std::to_string(static_cast<long long>(origin.x)) + " " +
                               std::to_string(static_cast<long long>(origin.y)));
      scroll_.context_.asked = origin;
    }

   private:
    FakeScrollView& scroll_;
  };

  class Context : public AnimationContext {
   public:
    explicit Context(FakeScrollView& scroll) : scroll_(scroll) {}
    void beginGrouping() override { scroll_.calls_.push_back("beginGrouping"); }
    void endGrouping() override {
      scroll_.calls_.push_back("endGrouping");
      scroll_.target_ = asked;
    }
    std::optional<Point> asked;

   private:
    FakeScrollView& scroll_;
  };

  std::shared_ptr<Clip> clipView_;
  Context context_{*this};
};

// All of the document, or a part of it that is a view of its own.
class FakeDocument : public FakeTreeView {
 public:
  FakeDocument(Calls& calls, FakeScrollView& scroll)
      : FakeDocument(calls, scroll, {0, 0, scroll.document_.width, scroll.document_.height}) {}
  FakeDocument(Calls& calls, FakeScrollView& scroll, const Rect& frame)
      : FakeTreeView(calls, "document"), frame_(frame), scroll_(scroll) {}

  // The scroll view belongs to the test.
  std::shared_ptr<ScrollView> enclosingScrollView() override { return {std::shared_ptr<void>(), &scroll_}; }
  Rect visibleRect() const override {
    const Rect seen = scroll_.contentView()->bounds();
    const double left = std::max(frame_.x, seen.x);
    const double low = std::max(frame_.y, seen.y);
    const double right = std::min(frame_.x + frame_.width, seen.x + seen.width);
    const double top = std::min(frame_.y + frame_.height, seen.y + seen.height);
    if (right <= left || top <= low) return {};
    return {left - frame_.x, low - frame_.y, right - left, top - low};
  }
  bool scrollRectToVisible(const Rect& rect) override {
    record("scrollRectToVisible");
    const Rect seen = scroll_.contentView()->bounds();
    const Point before = scroll_.origin_;
    scroll_.origin_ = scroll_.contentView()->constrainScrollPoint(
        {before.x + missing(frame_.x + rect.x, rect.width, seen.x, seen.width),
         before.y + missing(frame_.y + rect.y, rect.height, seen.y, seen.height)});
    return scroll_.origin_ != before;
  }

 private:
  static double missing(double start, double length, double seenStart, double seenLength) {
    const double atStart = start - seenStart;
    const double atEnd = start + length - seenStart - seenLength;
    if (atStart < 0 && atEnd < 0) return length <= seenLength ? atStart : atEnd;
    if (atStart > 0 && atEnd > 0) return length <= seenLength ? atEnd : atStart;
    return 0.0;
  }
  const Rect frame_;
  FakeScrollView& scroll_;
};

}  // namespace halvorn
