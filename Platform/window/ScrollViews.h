// Documents that are larger than the place they have.
//
// Coordinates grow to the right and upwards: the smallest y is the lower edge of a document,
// and the largest its upper one. A clip view's bounds are the part of the document that it
// shows, in the document's coordinates.
//
// Thread: main, all of them.
// Why: docs/decisions/018-views.md
#pragma once

#include <memory>

#include "Core/Geometry.h"

namespace halvorn {

class ClipView;

// Where a property is set over time instead of at once.
class BoundsAnimator {
 public:
  virtual ~BoundsAnimator() = default;
  virtual void setBoundsOrigin(const Point& origin) = 0;  // where it is going to be
};

// Animations that are asked for between the two calls begin together when the group ends, last as long as the
// desktop's animations last, and take the place of those under way.
class AnimationContext {
 public:
  virtual ~AnimationContext() = default;
  virtual void beginGrouping() = 0;  // what follows belongs together
  virtual void endGrouping() = 0;    // and begins now
};

class ClipView {  // the part of a document that is seen
 public:
  virtual ~ClipView() = default;
  [[nodiscard]] virtual Rect bounds() const = 0;  // of that part, in the document
  // The nearest origin at which nothing but the document is seen.
  [[nodiscard]] virtual Point constrainScrollPoint(const Point& point) const = 0;
  [[nodiscard]] virtual BoundsAnimator& animator() = 0;  // lives as long as the clip view
};

class ScrollView {  // a document with scroll bars
 public:
  virtual ~ScrollView() = default;
  [[nodiscard]] virtual std::shared_ptr<ClipView> contentView() = 0;  // never null
  // Has the scroll bars show where the clip view is, or is going to be.
  virtual void reflectScrolledClipView(ClipView& clipView) = 0;
  [[nodiscard]] virtual AnimationContext& animationContext() = 0;  // lives as long as the scroll view
};

}  // namespace halvorn
