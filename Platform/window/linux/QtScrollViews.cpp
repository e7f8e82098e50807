#include "Platform/window/linux/QtScrollViews.h"

#include <QParallelAnimationGroup>
#include <QPropertyAnimation>
#include <QScrollBar>
#include <algorithm>
#include <cmath>

namespace halvorn {
namespace {

// Whether the horizontal bar counts from the right.
bool countsFromTheRight(const QAbstractScrollArea& area) { return area.layoutDirection() == Qt::RightToLeft; }

int rounded(double value, int most) {
  return static_cast<int>(std::lround(std::clamp(value, 0.0, static_cast<double>(most))));
}

int horizontalValue(const QAbstractScrollArea& area, double x) {
  const int most = area.horizontalScrollBar()->maximum();
  const int value = rounded(x, most);
  return countsFromTheRight(area) ? most - value : value;
}

int verticalValue(const QAbstractScrollArea& area, double y) {
  const int most = area.verticalScrollBar()->maximum();
  return most - rounded(y, most);
}

// The animation of an area's bars; the one before it ends where it is.
class ScrollAnimation : public QParallelAnimationGroup {
 public:
  explicit ScrollAnimation(QAbstractScrollArea* area) : QParallelAnimationGroup(area) {
    for (QObject* other : area->children()) {
      auto* before = dynamic_cast<ScrollAnimation*>(other);
      if (before != nullptr && before != this) before->stop();
    }
  }

  void add(QScrollBar* bar, int value) {
    auto* animation = new QPropertyAnimation(bar, "value", this);  // lasts as long as the toolkit's do
    animation->setEasingCurve(QEasingCurve::InOutSine);
    animation->setEndValue(value);
    // Whoever takes hold of the bar has it.
    connect(bar, &QScrollBar::actionTriggered, this, &QAbstractAnimation::stop);
  }
};

// How far a stretch of that length must move for all of it, or as much as fits, to be seen.
double missing(double start, double length, double seenStart, double seenLength) {
  const double before = start - seenStart;
  const double behind = start + length - (seenStart + seenLength);
  if (before < 0.0 && behind < 0.0) return std::max(before, behind);
  if (before > 0.0 && behind > 0.0) return std::min(before, behind);
  return 0.0;
}

}  // namespace

void QtAnimationContext::endGrouping() {
  if (depth_ == 0 || --depth_ > 0 || !asked_) return;
  auto* animation = new ScrollAnimation(&area_);
  animation->add(area_.horizontalScrollBar(), horizontalValue(area_, asked_->x));
  animation->add(area_.verticalScrollBar(), verticalValue(area_, asked_->y));
  asked_.reset();
  animation->start(QAbstractAnimation::DeleteWhenStopped);
}

void QtAnimationContext::scrollTo(const Point& origin) {
  beginGrouping();
  asked_ = origin;
  endGrouping();
}

QtClipView::QtClipView(QAbstractScrollArea& area, std::shared_ptr<QtAnimationContext> context)
    : area_(area), context_(context ? std::move(context) : std::make_shared<QtAnimationContext>(area)) {}

Rect QtClipView::bounds() const {
  const QScrollBar* across = area_.horizontalScrollBar();
  const QScrollBar* down = area_.verticalScrollBar();
  const int x = countsFromTheRight(area_) ? across->maximum() - across->value() : across->value();
  const int y = down->maximum() - down->value();
  const QSize size = area_.viewport()->size();
  return {static_cast<double>(x), static_cast<double>(y), static_cast<double>(size.width()),
          static_cast<double>(size.height())};
}

Point QtClipView::constrainScrollPoint(const Point& point) const {
  return {std::clamp(point.x, 0.0, static_cast<double>(area_.horizontalScrollBar()->maximum())),
          std::clamp(point.y, 0.0, static_cast<double>(area_.verticalScrollBar()->maximum()))};
}

QtScrollView::QtScrollView(QAbstractScrollArea& area)
    : area_(area), context_(std::make_shared<QtAnimationContext>(area)) {}

std::shared_ptr<ClipView> QtScrollView::contentView() {
  return std::make_shared<QtClipView>(area_, context_);
}

bool QtScrollView::scrollToVisible(const Rect& rect) {
  const Rect seen = QtClipView(area_).bounds();
  QScrollBar* across = area_.horizontalScrollBar();
  QScrollBar* down = area_.verticalScrollBar();
  const int acrossBefore = across->value();
  const int downBefore = down->value();
  across->setValue(horizontalValue(area_, seen.x + missing(rect.x, rect.width, seen.x, seen.width)));
  down->setValue(verticalValue(area_, seen.y + missing(rect.y, rect.height, seen.y, seen.height)));
  return across->value() != acrossBefore || down->value() != downBefore;
}

}  // namespace halvorn
