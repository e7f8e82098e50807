// Any view of AppKit's. For sources in Objective-C++ alone.
#pragma once

#import <AppKit/AppKit.h>

#include <functional>

#include "Platform/window/Views.h"

namespace halvorn {

// What its holder does when the view needs another place: it was hidden, or its text is another one.
using PlacesAgain = std::function<void()>;

class MacView : public virtual View {
 public:
  explicit MacView(NSView* view, PlacesAgain placesAgain = {})
      : view_([view retain]), placesAgain_(std::move(placesAgain)) {}
  ~MacView() override { [view_ release]; }
  MacView(const MacView&) = delete;
  MacView& operator=(const MacView&) = delete;

  void setHidden(Hidden hidden) override;
  [[nodiscard]] Hidden isHidden() const override;
  void setAppearance(AppearanceName name) override;
  [[nodiscard]] AppearanceName appearance() const override { return appearance_; }
  [[nodiscard]] std::shared_ptr<View> superview() override;
  void removeFromSuperviewWithoutNeedingDisplay() override;
  void addSubview(View& subview, ViewPosition positioned, View* relativeTo) override;
  [[nodiscard]] std::shared_ptr<ScrollView> enclosingScrollView() override;
  [[nodiscard]] Rect visibleRect() const override;
  bool scrollRectToVisible(const Rect& rect) override;

  [[nodiscard]] NSView* view() const { return view_; }

 protected:
  void placeAgain() const {
    if (placesAgain_) placesAgain_();
  }

 private:
  NSView* const view_;
  const PlacesAgain placesAgain_;
  AppearanceName appearance_ = AppearanceName::Inherited;
};

// Rectangles of a view that counts y downwards, as if it counted upwards, and back.
[[nodiscard]] Rect upwards(NSView* view, NSRect rect);
[[nodiscard]] NSRect ofView(NSView* view, const Rect& rect);

// The name of the system's appearance; nil for Inherited.
[[nodiscard]] NSString* nameOfAppearance(AppearanceName name);

}  // namespace halvorn
