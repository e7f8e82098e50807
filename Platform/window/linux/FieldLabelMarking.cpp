// What the mouse marks in a label, and how it is copied.
#include <QClipboard>
#include <QContextMenuEvent>
#include <QCoreApplication>
#include <QGuiApplication>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QStyle>
#include <QTextBoundaryFinder>
#include <algorithm>

#include "Platform/window/linux/FieldLabel.h"

namespace halvorn {

qsizetype FieldLabel::Line::inText(qsizetype position) const {
  return start + position + (lostAt >= 0 && position > lostAt ? lost : 0);
}

// What is lost stands where the ellipsis does.
qsizetype FieldLabel::Line::inLine(qsizetype position) const {
  qsizetype found = position - start;
  if (lostAt >= 0 && found > lostAt) found = std::max(found - lost, lostAt + 1);
  return std::clamp<qsizetype>(found, 0, text.size());
}

QString FieldLabel::markedText() const {
  return text().mid(std::min(markedFrom_, markedTo_), std::abs(markedTo_ - markedFrom_));
}

void FieldLabel::mark(qsizetype from, qsizetype to) {
  if (from == markedFrom_ && to == markedTo_) return;
  markedFrom_ = from;
  markedTo_ = to;
  update();
}

bool FieldLabel::copyMarkedIn(const QWidget& window) {
  for (const QLabel* each : window.findChildren<QLabel*>()) {
    const auto* label = dynamic_cast<const FieldLabel*>(each);
    if (label == nullptr || !label->isVisible() || label->markedText().isEmpty()) continue;
    QGuiApplication::clipboard()->setText(label->markedText());
    return true;
  }
  return false;
}

// A line as it stands, from the left edge of the label.
std::unique_ptr<QTextLayout> FieldLabel::layoutOf(const Line& line) const {
  QTextOption option;
  option.setWrapMode(QTextOption::NoWrap);
  option.setTextDirection(leftToRightText_ ? Qt::LeftToRight : layoutDirection());
  option.setAlignment(QStyle::visualAlignment(layoutDirection(), Qt::AlignLeading) | Qt::AlignAbsolute);
  auto layout = std::make_unique<QTextLayout>(line.text, font());
  layout->setTextOption(option);
  layout->beginLayout();
  layout->createLine().setLineWidth(width());
  layout->endLayout();
  return layout;
}

qsizetype FieldLabel::positionAt(const QPoint& place) const {
  const Lines& all = linesFor(width());
  if (all.lines.empty()) return 0;
  const int last = static_cast<int>(all.lines.size()) - 1;
  const int index = std::clamp(place.y() / lineHeight(), 0, last);
  if (place.y() < 0) return 0;
  if (place.y() >= (last + 1) * lineHeight()) return text().size();
  const Line& line = all.lines[static_cast<std::size_t>(index)];
  return line.text.isEmpty() ? line.start : line.inText(layoutOf(line)->lineAt(0).xToCursor(place.x()));
}

void FieldLabel::drawMarked(QPainter& painter, const Line& line, int y) const {
  const qsizetype from = line.inLine(std::min(markedFrom_, markedTo_));
  const qsizetype to = line.inLine(std::max(markedFrom_, markedTo_));
  if (from >= to) return;
  QTextLayout::FormatRange marked;
  marked.start = static_cast<int>(from);
  marked.length = static_cast<int>(to - from);
  marked.format.setBackground(palette().brush(QPalette::Highlight));
  marked.format.setForeground(palette().brush(QPalette::HighlightedText));
  const int above = (lineHeight() - fontMetrics().height()) / 2;
  // Nothing but what is marked: the rest has been drawn.
  painter.save();
  painter.setPen(Qt::transparent);
  layoutOf(line)->draw(&painter, QPointF(0, y + above), {marked});
  painter.restore();
}

void FieldLabel::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton || text().isEmpty()) return QLabel::mousePressEvent(event);
  for (QLabel* each : window()->findChildren<QLabel*>()) {
    if (auto* other = dynamic_cast<FieldLabel*>(each); other != nullptr && other != this) other->mark(0, 0);
  }
  const qsizetype place = positionAt(event->pos());
  mark(event->modifiers().testFlag(Qt::ShiftModifier) ? markedFrom_ : place, place);
}

void FieldLabel::mouseMoveEvent(QMouseEvent* event) {
  if (!event->buttons().testFlag(Qt::LeftButton)) return QLabel::mouseMoveEvent(event);
  mark(markedFrom_, positionAt(event->pos()));
}

void FieldLabel::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return QLabel::mouseReleaseEvent(event);
  giveToMiddleButton();
}

void FieldLabel::mouseDoubleClickEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return QLabel::mouseDoubleClickEvent(event);
  QTextBoundaryFinder words(QTextBoundaryFinder::Word, text());
  words.setPosition(positionAt(event->pos()));
  const qsizetype from = words.isAtBoundary() ? words.position() : words.toPreviousBoundary();
  const qsizetype to = words.toNextBoundary();
  mark(std::max<qsizetype>(from, 0), to < 0 ? text().size() : to);
  giveToMiddleButton();
}

void FieldLabel::giveToMiddleButton() const {
  QClipboard* clipboard = QGuiApplication::clipboard();
  if (clipboard->supportsSelection() && !markedText().isEmpty())
    clipboard->setText(markedText(), QClipboard::Selection);
}

// The words are the toolkit's, for which there are translations.
void FieldLabel::contextMenuEvent(QContextMenuEvent* event) {
  if (text().isEmpty()) return;
  auto* menu = new QMenu(this);
  menu->setAttribute(Qt::WA_DeleteOnClose);
  menu->addAction(QCoreApplication::translate("QWidgetTextControl", "&Copy"), this, [this] {
    QGuiApplication::clipboard()->setText(markedText().isEmpty() ? text() : markedText());
  });
  menu->addAction(QCoreApplication::translate("QWidgetTextControl", "Select All"), this,
                  [this] { mark(0, text().size()); });
  menu->popup(event->globalPos());
}

}  // namespace halvorn
