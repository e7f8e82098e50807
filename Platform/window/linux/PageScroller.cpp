#include "Platform/window/linux/PageScroller.h"

#include <QEvent>
#include <QScrollBar>

namespace halvorn {
namespace {

constexpr int kLeastLines = 4;

}  // namespace

PageScroller::PageScroller(QWidget* page) {
  setFrameShape(QFrame::NoFrame);
  setWidgetResizable(true);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  // The keys come through the window, whatever has the keyboard: nobody has to find the page first.
  setFocusPolicy(Qt::NoFocus);
  verticalScrollBar()->setFocusPolicy(Qt::NoFocus);
  setWidget(page);
  verticalScrollBar()->setSingleStep(fontMetrics().lineSpacing());
}

bool PageScroller::scrollBy(int key) {
  QScrollBar* bar = verticalScrollBar();
  if (bar->maximum() == 0) return false;
  switch (key) {
    case Qt::Key_PageUp:
      bar->triggerAction(QAbstractSlider::SliderPageStepSub);
      return true;
    case Qt::Key_PageDown:
      bar->triggerAction(QAbstractSlider::SliderPageStepAdd);
      return true;
    case Qt::Key_Home:
      bar->triggerAction(QAbstractSlider::SliderToMinimum);
      return true;
    case Qt::Key_End:
      bar->triggerAction(QAbstractSlider::SliderToMaximum);
      return true;
    default:
      return false;
  }
}

// The toolkit asks whether the page fits beside a bar, and so keeps one that nobody needs.
void PageScroller::decideBar() {
  const QSize most = maximumViewportSize();
  const bool fits = widget()->heightForWidth(most.width()) <= most.height();
  const auto policy = fits ? Qt::ScrollBarAlwaysOff : Qt::ScrollBarAsNeeded;
  if (policy != verticalScrollBarPolicy()) setVerticalScrollBarPolicy(policy);
}

bool PageScroller::eventFilter(QObject* object, QEvent* event) {
  if (object == widget() && event->type() == QEvent::LayoutRequest) decideBar();
  return QScrollArea::eventFilter(object, event);
}

void PageScroller::resizeEvent(QResizeEvent* event) {
  decideBar();
  QScrollArea::resizeEvent(event);
}

QSize PageScroller::minimumSizeHint() const {
  return {widget() != nullptr ? widget()->minimumSizeHint().width() : 0,
          fontMetrics().lineSpacing() * kLeastLines};
}

QSize PageScroller::sizeHint() const {
  return widget() != nullptr ? widget()->sizeHint() : minimumSizeHint();
}

}  // namespace halvorn
