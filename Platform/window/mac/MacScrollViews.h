// Scroll views and clip views of AppKit's. For sources in Objective-C++ alone.
#pragma once

#import <AppKit/AppKit.h>

#include "Platform/window/ScrollViews.h"

namespace halvorn {

class MacClipView : public ClipView, private BoundsAnimator {
 public:
  explicit MacClipView(NSClipView* view) : view_([view retain]) {}
  ~MacClipView() override { [view_ release]; }
  MacClipView(const MacClipView&) = delete;
  MacClipView& operator=(const MacClipView&) = delete;
  [[nodiscard]] Rect bounds() const override;
  [[nodiscard]] Point constrainScrollPoint(const Point& point) const override;
  [[nodiscard]] BoundsAnimator& animator() override { return *this; }
  [[nodiscard]] NSClipView* view() const { return view_; }

 private:
  void setBoundsOrigin(const Point& origin) override;
  NSClipView* const view_;
};

class MacScrollView : public ScrollView, private AnimationContext {
 public:
  explicit MacScrollView(NSScrollView* view) : view_([view retain]) {}
  ~MacScrollView() override { [view_ release]; }
  MacScrollView(const MacScrollView&) = delete;
  MacScrollView& operator=(const MacScrollView&) = delete;
  [[nodiscard]] std::shared_ptr<ClipView> contentView() override;
  void reflectScrolledClipView(ClipView& clipView) override;
  [[nodiscard]] AnimationContext& animationContext() override { return *this; }

 private:
  void beginGrouping() override;
  void endGrouping() override;
  NSScrollView* const view_;
};

}  // namespace halvorn
