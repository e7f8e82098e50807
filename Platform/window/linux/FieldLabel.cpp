#include "Platform/window/linux/FieldLabel.h"

#include <QPainter>
#include <QResizeEvent>
#include <QStyle>
#include <algorithm>

#include "Platform/color/linux/QtGraphicsContext.h"

namespace halvorn {
namespace {

constexpr int kWidestLine = 90;  // average characters; longer lines are hard to follow to the next one
constexpr qsizetype kLongestLaidOut = 4096;

bool continuesCharacter(QChar unit) { return unit.isLowSurrogate() || unit.isMark(); }

struct ElidedText {
  QString text;
  qsizetype head;  // how much of the beginning is kept
};

// The text with that many units kept, half of them from each end; no character is cut in two.
ElidedText withMiddleElided(const QString& text, qsizetype kept) {
  qsizetype head = kept / 2;
  qsizetype tail = text.size() - (kept - head);
  while (head > 0 && continuesCharacter(text.at(head))) --head;
  while (tail < text.size() && continuesCharacter(text.at(tail))) ++tail;
  return {text.left(head) + u'\u2026' + text.mid(tail), head};
}

qsizetype leadingBlanks(const QString& text) {
  qsizetype count = 0;
  while (count < text.size() && text.at(count).isSpace()) ++count;
  return count;
}

}  // namespace

FieldLabel::FieldLabel(QWidget* parent) : QLabel(parent) {
  setTextFormat(Qt::PlainText);
  setWordWrap(true);
  QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Preferred);
  policy.setHeightForWidth(true);
  setSizePolicy(policy);
  setCursor(Qt::IBeamCursor);
}

void FieldLabel::setMaximumLines(int lines) {
  maximumLines_ = lines;
  lines_.clear();
}

void FieldLabel::setLoses(Loses part) {
  loses_ = part;
  lines_.clear();
}

void FieldLabel::setLeftToRightText(bool leftToRight) {
  leftToRightText_ = leftToRight;
  lines_.clear();
}

void FieldLabel::setFieldText(const QString& text) {
  lines_.clear();
  mark(0, 0);
  setText(text);
  setToolTip({});
  if (isVisible()) tellWhatIsLost();
  updateGeometry();
  update();
}

void FieldLabel::setTextColor(const ColorPointer& color) {
  textColor_ = color;
  update();
}

QStringList FieldLabel::linesShown() const {
  QStringList texts;
  for (const Line& line : linesFor(width()).lines) texts << line.text;
  return texts;
}

const FieldLabel::Lines& FieldLabel::linesFor(int given) const {
  constexpr qsizetype kWidthsKept = 8;
  const int width = std::min(given, fontMetrics().averageCharWidth() * kWidestLine);
  const auto known = lines_.constFind(width);
  if (known != lines_.constEnd()) return *known;
  if (lines_.size() == kWidthsKept) lines_.clear();
  Lines lines = brokenFor(text(), width);
  if (lines.cut && loses_ == Loses::Middle) lines = withoutMiddle(width);
  return *lines_.insert(width, lines);
}

// With as much of both ends as the lines hold.
FieldLabel::Lines FieldLabel::withoutMiddle(int width) const {
  const QString whole = text().size() <= kLongestLaidOut
                            ? text()
                            : text().left(kLongestLaidOut / 2) + text().right(kLongestLaidOut / 2);
  qsizetype fits = 0;
  for (qsizetype step = kLongestLaidOut; step > 0; step /= 2) {
    const qsizetype kept = fits + step;
    if (kept < whole.size() && !brokenFor(withMiddleElided(whole, kept).text, width).cut) fits = kept;
  }
  const ElidedText elided = withMiddleElided(whole, fits);
  Lines lines = brokenFor(elided.text, width);
  lines.cut = true;
  const qsizetype lost = text().size() - elided.text.size();
  for (Line& line : lines.lines) {
    if (line.start > elided.head) {
      line.start += lost;
    } else if (elided.head < line.start + line.text.size()) {
      line.lostAt = elided.head - line.start;
      line.lost = lost;
    }
  }
  return lines;
}

FieldLabel::Lines FieldLabel::brokenFor(const QString& text, int width) const {
  Lines found;
  QTextOption option;
  option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
  option.setTextDirection(leftToRightText_ ? Qt::LeftToRight : layoutDirection());
  qsizetype start = 0;
  for (const QString& paragraph : text.split(u'\n')) {
    QTextLayout layout(paragraph, font());
    layout.setTextOption(option);
    layout.beginLayout();
    for (QTextLine line = layout.createLine();; line = layout.createLine()) {
      if (!line.isValid()) {
        if (paragraph.isEmpty()) found.lines.push_back({.text = {}, .start = start});
        break;
      }
      const qsizetype lineStart = start + line.textStart();
      line.setLineWidth(width);
      if (static_cast<int>(found.lines.size()) + 1 == maximumLines_) {
        const bool isAll = lineStart + line.textLength() >= text.size();
        found.cut = !isAll;
        found.lines.push_back(lastLine(text, paragraph.mid(line.textStart()), lineStart, isAll, width));
        return found;
      }
      const QString whole = paragraph.mid(line.textStart(), line.textLength());
      found.lines.push_back({.text = whole.trimmed(), .start = lineStart + leadingBlanks(whole)});
    }
    layout.endLayout();
    start += paragraph.size() + 1;
  }
  return found;
}

// What is left of a paragraph, and of the text after it, in one line.
FieldLabel::Line FieldLabel::lastLine(const QString& text, const QString& rest, qsizetype start, bool isAll,
                                      int width) const {
  const bool isRestOfText = start + rest.size() >= text.size();
  const QString last = isAll || isRestOfText ? rest : rest + u'\u2026';
  Line line = {.text = fontMetrics().elidedText(last.left(kLongestLaidOut), Qt::ElideRight, width),
               .start = start};
  if (isAll) return line;
  line.lostAt = std::max<qsizetype>(line.text.size() - 1, 0);
  line.lost = text.size() - start - line.text.size();
  return line;
}

int FieldLabel::lineHeight() const { return qRound(fontMetrics().height() * 1.2); }

int FieldLabel::heightForWidth(int width) const {
  if (text().isEmpty()) return 0;
  return static_cast<int>(linesFor(std::max(width, 1)).lines.size()) * lineHeight();
}

QSize FieldLabel::sizeHint() const {
  const QFontMetrics metrics(font());
  int widest = 0;
  for (const QString& paragraph : text().left(kLongestLaidOut).split(u'\n')) {
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
  tellWhatIsLost();
}

void FieldLabel::tellWhatIsLost() {
  setToolTip(linesFor(std::max(width(), 1)).cut ? text().left(kLongestLaidOut) : QString());
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
  for (const Line& line : linesFor(width()).lines) {
    painter.drawText(QRect(0, y, width(), height), static_cast<int>(leading) | Qt::TextSingleLine | direction,
                     line.text);
    drawMarked(painter, line, y);
    y += height;
  }
}

}  // namespace halvorn
