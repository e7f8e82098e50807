#include "Platform/window/linux/ActionButton.h"

#include <QFocusEvent>
#include <QGuiApplication>
#include <QPainter>
#include <algorithm>

namespace halvorn {
namespace {

// The ring of the keyboard's place lies outside the face, 3 points wide with its gap.
constexpr int kLeastWidth = 102;
constexpr int kLeastHeight = 36;
constexpr int kRoundSide = 34;
constexpr qreal kRadius = 8.0;

}  // namespace

ActionButton::ActionButton(Shape shape, QWidget* parent) : QPushButton(parent), shape_(shape) {
  setAutoDefault(false);
  setSizePolicy(QSizePolicy::Minimum, QSizePolicy::Fixed);
}

void ActionButton::setTitle(const QString& title) {
  title_ = title;
  setMnemonic({});
  updateGeometry();
}

void ActionButton::setMnemonic(QChar letter) {
  const qsizetype at = letter.isNull() ? -1 : title_.indexOf(letter);
  const auto escaped = [](QString part) { return part.replace(u'&', QStringLiteral("&&")); };
  setText(at < 0 ? escaped(title_) : escaped(title_.left(at)) + u'&' + escaped(title_.mid(at)));
}

QSize ActionButton::sizeHint() const {
  const QFontMetrics metrics(font());
  const int side = std::max(kRoundSide, metrics.height() + 14);
  if (shape_ == Shape::Round) return {side, side};
  return {std::max(kLeastWidth, metrics.horizontalAdvance(title_) + 42),
          std::max(kLeastHeight, metrics.height() + 18)};
}

void ActionButton::focusInEvent(QFocusEvent* event) {
  const Qt::FocusReason reason = event->reason();
  showsFocus_ =
      reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason || reason == Qt::ShortcutFocusReason;
  QPushButton::focusInEvent(event);
}

ActionButton::Colors ActionButton::colors() const {
  const QPalette& tones = palette();
  const bool stands = isDefault() && isEnabled();
  Colors found = {tones.color(stands ? QPalette::Highlight : QPalette::Button),
                  tones.color(stands ? QPalette::Highlight : QPalette::Mid),
                  tones.color(stands ? QPalette::HighlightedText : QPalette::ButtonText)};
  const bool dark = tones.color(QPalette::Window).lightness() < 128;
  if (isDown()) {
    found.face = found.face.darker(dark ? 125 : 112);
  } else if (underMouse() && isEnabled()) {
    // White text stands out the less, the lighter the highlight is.
    found.face = dark && !stands ? found.face.lighter(115) : found.face.darker(stands ? 108 : 104);
  }
  if (!isEnabled()) found.face.setAlphaF(0.5F);
  return found;
}

void ActionButton::paintEvent(QPaintEvent*) {
  const Colors tones = colors();
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  QRectF frame = rect();
  if (shape_ == Shape::Round) {
    const qreal side = std::min(frame.width(), frame.height());
    frame = QRectF(frame.center() - QPointF(side, side) / 2.0, QSizeF(side, side));
  }
  const qreal radius = shape_ == Shape::Round ? frame.height() / 2.0 : kRadius;
  if (showsFocus_ && hasFocus()) {
    // The color of links: the highlight does not stand out enough from a dark window.
    painter.setPen(QPen(palette().color(QPalette::Link), 2.0));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(frame.adjusted(1, 1, -1, -1), radius, radius);
  }
  const QRectF face = frame.adjusted(3.5, 3.5, -3.5, -3.5);
  painter.setPen(QPen(tones.edge, 1.0));
  painter.setBrush(tones.face);
  painter.drawRoundedRect(face, std::max(radius - 2.5, 0.0), std::max(radius - 2.5, 0.0));
  painter.setPen(tones.text);
  const bool isAltHeld = QGuiApplication::keyboardModifiers().testFlag(Qt::AltModifier);
  painter.drawText(face, Qt::AlignCenter | (isAltHeld ? Qt::TextShowMnemonic : Qt::TextHideMnemonic), text());
}

}  // namespace halvorn
