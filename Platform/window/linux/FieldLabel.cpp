#include "Platform/window/linux/FieldLabel.h"

#include <QPainter>
#include <QResizeEvent>
#include <QStyle>
#include <algorithm>

#include "Platform/color/linux/QtGraphicsContext.h"

namespace halvorn {

FieldLabel::FieldLabel(QWidget* parent) : QLabel(parent) {
  setTextFormat(Qt::PlainText);
  setWordWrap(true);
  QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Preferred);
  policy.setHeightForWidth(true);
  setSizePolicy(policy);
}

void FieldLabel::setMaximumLines(int lines) {
  maximumLines_ = lines;
  lines_.clear();
}

void FieldLabel::setLeftToRightText(bool leftToRight) {
  leftToRightText_ = leftToRight;
  lines_.clear();
}

void FieldLabel::setFieldText(const QString& text) {
  lines_.clear();
  setText(text);
  setToolTip({});
  updateGeometry();
  update();
}

void FieldLabel::setTextColor(const ColorPointer& color) {
  textColor_ = color;
  update();
}

const FieldLabel::Lines& FieldLabel::linesFor(int width) const {
  constexpr qsizetype kWidthsKept = 8;
  const auto known = lines_.constFind(width);
  if (known != lines_.constEnd()) return *known;
  if (lines_.size() == kWidthsKept) lines_.clear();
  return *lines_.insert(width, brokenFor(width));
}

FieldLabel::Lines FieldLabel::brokenFor(int width) const {
  Lines lines;
  QTextOption option;
  option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
  option.setTextDirection(leftToRightText_ ? Qt::LeftToRight : layoutDirection());
  const QFontMetrics metrics(font());
  const QStringList paragraphs = text().split(u'\n');
  for (qsizetype i = 0; i < paragraphs.size(); ++i) {
    const QString& paragraph = paragraphs.at(i);
    QTextLayout layout(paragraph, font());
    layout.setTextOption(option);
    layout.beginLayout();
    for (QTextLine line = layout.createLine();; line = layout.createLine()) {
      if (!line.isValid()) {
        if (paragraph.isEmpty()) lines.texts << QString();
        break;
      }
      if (lines.texts.size() + 1 == maximumLines_) {
        const QString rest = paragraph.mid(line.textStart());
        line.setLineWidth(width);
        lines.cut = line.textLength() < rest.size() || i + 1 < paragraphs.size();
        const QString last = lines.cut && line.textLength() == rest.size() ? rest + u'\u2026' : rest;
        lines.texts << metrics.elidedText(last.left(4096), Qt::ElideRight, width);
        return lines;
      }
      line.setLineWidth(width);
      lines.texts << paragraph.mid(line.textStart(), line.textLength()).trimmed();
    }
    layout.endLayout();
  }
  return lines;
}

int FieldLabel::lineHeight() const { return qRound(fontMetrics().height() * 1.2); }

int FieldLabel::heightForWidth(int width) const {
  if (text().isEmpty()) return 0;
  return static_cast<int>(linesFor(std::max(width, 1)).texts.size()) * lineHeight();
}

QSize FieldLabel::sizeHint() const {
  const QFontMetrics metrics(font());
  int widest = 0;
  for (const QString& paragraph : text().left(4096).split(u'\n')) {
    widest = std::max(widest, metrics.horizontalAdvance(paragraph));
  }
  const int width = std::min(widest + 2, metrics.averageCharWidth() * 56);
  return {width, heightForWidth(width)};
}

QSize FieldLabel::minimumSizeHint() const {
  if (text().isEmpty()) return {0, 0};
  return {fontMetrics().averageCharWidth() * 8, lineHeight()};
}

void FieldLabel::resizeEvent(QResizeEvent* event) {
  QLabel::resizeEvent(event);
  setToolTip(linesFor(std::max(event->size().width(), 1)).cut ? text().left(4096) : QString());
}

void FieldLabel::changeEvent(QEvent* event) {
  lines_.clear();  // another font or direction of writing
  QLabel::changeEvent(event);
}

void FieldLabel::paintEvent(QPaintEvent*) {
  if (text().isEmpty()) return;
  QPainter painter(this);
  painter.setPen(palette().color(foregroundRole()));
  if (textColor_) {
    QtGraphicsContext context(painter);
    textColor_->set(context);
  }
  painter.setLayoutDirection(layoutDirection());
  const Qt::Alignment leading =
      QStyle::visualAlignment(layoutDirection(), Qt::AlignLeading | Qt::AlignVCenter);
  const int direction = leftToRightText_ ? Qt::TextForceLeftToRight : 0;
  const int height = lineHeight();
  int y = 0;
  for (const QString& line : linesFor(width()).texts) {
    painter.drawText(QRect(0, y, width(), height), static_cast<int>(leading) | Qt::TextSingleLine | direction,
                     line);
    y += height;
  }
}

}  // namespace halvorn
