#include "Platform/linux/ui/ActionButton.h"

#include <QPainter>
#include <QStyleOptionButton>
#include <QStylePainter>
#include <algorithm>

namespace halvorn {
namespace {

constexpr int kLeastWidth = 92;
constexpr int kLeastHeight = 30;
constexpr int kRoundSide = 28;

}  // namespace

ActionButton::ActionButton(Shape shape, QWidget* parent) : QPushButton(parent), shape_(shape) {
  setAutoDefault(false);
  setSizePolicy(QSizePolicy::Minimum, QSizePolicy::Fixed);
}

void ActionButton::setTitle(const QString& title) {
  title_ = title;
  setText(QString(title).replace(u'&', QStringLiteral("&&")));
  updateGeometry();
}

QSize ActionButton::sizeHint() const {
  if (shape_ == Shape::Round) return {kRoundSide, kRoundSide};
  const QFontMetrics metrics(font());
  return {std::max(kLeastWidth, metrics.horizontalAdvance(text()) + 32),
          std::max(kLeastHeight, metrics.height() + 12)};
}

void ActionButton::paintEvent(QPaintEvent*) {
  if (shape_ == Shape::Round) {
    paintRound();
    return;
  }
  QStyleOptionButton option;
  initStyleOption(&option);
  if (isDefault() && isEnabled()) {
    option.palette.setColor(QPalette::Button, option.palette.color(QPalette::Highlight));
    option.palette.setColor(QPalette::ButtonText, option.palette.color(QPalette::HighlightedText));
  }
  QStylePainter(this).drawControl(QStyle::CE_PushButton, option);
}

void ActionButton::paintRound() {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  QColor face = palette().color(QPalette::Button);
  if (isDown()) {
    face = face.darker(115);
  } else if (underMouse() && isEnabled()) {
    face = face.lighter(105);
  }
  const bool ring = hasFocus();
  painter.setPen(QPen(palette().color(ring ? QPalette::Highlight : QPalette::Mid), ring ? 2.0 : 1.0));
  painter.setBrush(face);
  const qreal side = std::min(width(), height()) - 2.0;
  painter.drawEllipse(QRectF((width() - side) / 2.0, (height() - side) / 2.0, side, side));
  painter.setPen(palette().color(QPalette::ButtonText));
  painter.drawText(rect(), Qt::AlignCenter | Qt::TextShowMnemonic, text());
}

}  // namespace halvorn
