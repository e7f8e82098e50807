#include "Platform/window/linux/FieldLabel.h"

#include <QClipboard>
#include <QContextMenuEvent>
#include <QCoreApplication>
#include <QGuiApplication>
#include <QMenu>
#include <QPainter>
#include <QResizeEvent>
#include <QStyle>
#include <algorithm>
#include <utility>

#include "Platform/color/linux/QtGraphicsContext.h"

namespace halvorn {
namespace {

constexpr int kWidestLine = 90;  // average characters; longer lines are hard to follow to the next one
constexpr qsizetype kLongestLaidOut = 4096;

bool continuesCharacter(QChar unit) { return unit.isLowSurrogate() || unit.isMark(); }

// The text with that many units kept, half of them from each end; no character is cut in two.
QString withMiddleElided(const QString& text, qsizetype kept) {
  qsizetype head = kept / 2;
  qsizetype tail = text.size() - (kept - head);
  while (head > 0 && continuesCharacter(text.at(head))) --head;
  while (tail < text.size() && continuesCharacter(text.at(tail))) ++tail;
  return text.left(head) + u'\u2026' + text.mid(tail);
}

}  // namespace

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

const FieldLabel::Lines& FieldLabel::linesFor(int given) const {
  constexpr qsizetype kWidthsKept = 8;
  const int width = std::min(given, fontMetrics().averageCharWidth() * kWidestLine);
  const auto known = lines_.constFind(width);
  if (known != lines_.constEnd()) return *known;
  if (lines_.size() == kWidthsKept) lines_.clear();
  Lines lines = brokenFor(text(), width);
  if (lines.cut && loses_ == Loses::Middle) lines = withoutMiddle(width);
  return *lines_.insert(width, std::move(lines));
}

// With as much of both ends as the lines hold.
FieldLabel::Lines FieldLabel::withoutMiddle(int width) const {
  const QString whole = text().size() <= kLongestLaidOut
                            ? text()
                            : text().left(kLongestLaidOut / 2) + text().right(kLongestLaidOut / 2);
  qsizetype fits = 0;
  for (qsizetype step = kLongestLaidOut; step > 0; step /= 2) {
    const qsizetype kept = fits + step;
    if (kept < whole.size() && !brokenFor(withMiddleElided(whole, kept), width).cut) fits = kept;
  }
  Lines lines = brokenFor(withMiddleElided(whole, fits), width);
  lines.cut = true;
  return lines;
}

FieldLabel::Lines FieldLabel::brokenFor(const QString& text, int width) const {
  Lines lines;
  QTextOption option;
  option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
  option.setTextDirection(leftToRightText_ ? Qt::LeftToRight : layoutDirection());
  const QFontMetrics metrics(font());
  const QStringList paragraphs = text.split(u'\n');
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
        lines.texts << metrics.elidedText(last.left(kLongestLaidOut), Qt::ElideRight, width);
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

// The words are the toolkit's, for which there are translations.
void FieldLabel::contextMenuEvent(QContextMenuEvent* event) {
  if (text().isEmpty()) return;
  auto* menu = new QMenu(this);
  menu->setAttribute(Qt::WA_DeleteOnClose);
  menu->addAction(QCoreApplication::translate("QWidgetTextControl", "&Copy"), this,
                  [this] { QGuiApplication::clipboard()->setText(text()); });
  menu->popup(event->globalPos());
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
