#include "Platform/window/linux/Spinner.h"

#include <QAccessible>
#include <QPainter>
#include <QTimerEvent>

#include "Platform/color/linux/Motion.h"

namespace halvorn {
namespace {

constexpr int kSteps = 1000;
constexpr int kSpokes = 12;
constexpr int kStepMilliseconds = 80;

void tellBusyChanged(QWidget* widget) {
  QAccessible::State changed;
  changed.busy = true;
  for (QWidget* each : {widget, widget->window()}) {
    QAccessibleStateChangeEvent event(each, changed);
    QAccessible::updateAccessibility(&event);
  }
}

}  // namespace

Spinner::Spinner(int side, QWidget* parent) : QProgressBar(parent) {
  setTextVisible(false);
  setRange(0, 1);
  setValue(0);
  setFixedSize(side, side);
}

void Spinner::start() {
  forgetProgress();
  setRange(0, 0);  // of unknown length, also for a screen reader
  step_ = 0;
  timer_.start(kStepMilliseconds, this);
  tellBusyChanged(this);
  update();
}

void Spinner::setProgress(double share, const QString& text) {
  if (!isWorking()) return;
  setRange(0, kSteps);
  setValue(qRound(share * kSteps));
  setToolTip(text);
  setAccessibleDescription(text);
}

void Spinner::forgetProgress() {
  setToolTip({});
  setAccessibleDescription({});
  if (isWorking()) setRange(0, 0);
}

void Spinner::stop() {
  const bool wasWorking = isWorking();
  timer_.stop();
  forgetProgress();
  setRange(0, 1);
  setValue(0);
  if (wasWorking) tellBusyChanged(this);
  update();
}

void Spinner::timerEvent(QTimerEvent* event) {
  if (event->timerId() != timer_.timerId()) {
    QProgressBar::timerEvent(event);
    return;
  }
  if (widgetsMotion() == Motion::Reduced) return;
  step_ = (step_ + 1) % kSpokes;
  update();
}

void Spinner::paintEvent(QPaintEvent*) {
  if (!isWorking()) return;
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.translate(QRectF(rect()).center());
  const qreal radius = width() / 2.0 - 1.0;
  for (int spoke = 0; spoke < kSpokes; ++spoke) {
    const int age = (step_ - spoke + kSpokes) % kSpokes;  // 0 is the spoke the wheel has reached
    QColor color = palette().color(QPalette::WindowText);
    color.setAlphaF(static_cast<float>(1.0 - 0.075 * age));
    painter.setPen(QPen(color, radius / 5.0, Qt::SolidLine, Qt::RoundCap));
    painter.save();
    painter.rotate(spoke * 360.0 / kSpokes);
    painter.drawLine(QPointF(0, -radius * 0.5), QPointF(0, -radius * 0.9));
    painter.restore();
  }
}

}  // namespace halvorn
