#include "Platform/window/linux/RowOrColumn.h"

#include <QFontMetrics>
#include <QStyle>
#include <QWidget>
#include <algorithm>

namespace halvorn {
namespace {

int heightOf(QLayoutItem* item, int width) {
  return item->hasHeightForWidth() ? item->heightForWidth(width) : item->sizeHint().height();
}

}  // namespace

RowOrColumn::RowOrColumn(int characters) : QBoxLayout(QBoxLayout::LeftToRight), characters_(characters) {}

QMargins RowOrColumn::margins() const { return contentsMargins(); }

std::vector<QLayoutItem*> RowOrColumn::shown() const {
  std::vector<QLayoutItem*> items;
  for (int i = 0; i < count(); ++i) {
    if (!itemAt(i)->isEmpty()) items.push_back(itemAt(i));
  }
  return items;
}

int RowOrColumn::stretchOf(const QLayoutItem* item) const {
  for (int i = 0; i < count(); ++i) {
    if (itemAt(i) == item) return stretch(i);
  }
  return 0;
}

// Less than that, and it is a column.
int RowOrColumn::wantedWidth() const {
  int wanted = margins().left() + margins().right();
  bool stretches = false;
  const auto items = shown();
  for (QLayoutItem* item : items) {
    stretches = stretches || stretchOf(item) > 0;
    wanted += stretchOf(item) > 0 ? 0 : item->sizeHint().width();
  }
  wanted += std::max<int>(static_cast<int>(items.size()) - 1, 0) * spacing();
  if (stretches && parentWidget() != nullptr)
    wanted += characters_ * parentWidget()->fontMetrics().averageCharWidth();
  return wanted;
}

std::vector<RowOrColumn::Place> RowOrColumn::row(int width) const {
  const auto items = shown();
  int stretches = 0;
  int left = width - margins().left() - margins().right();
  left -= std::max<int>(static_cast<int>(items.size()) - 1, 0) * spacing();
  for (QLayoutItem* item : items) {
    stretches += stretchOf(item);
    if (stretchOf(item) == 0) left -= item->sizeHint().width();
  }
  std::vector<Place> places;
  int offset = margins().left();
  for (QLayoutItem* item : items) {
    const int share = stretchOf(item);
    const int extent = share == 0 ? item->sizeHint().width() : std::max(left, 0) * share / stretches;
    places.push_back({item, offset, extent});
    offset += extent + spacing();
  }
  return places;
}

std::vector<RowOrColumn::Place> RowOrColumn::column(int width) const {
  const int inside = width - margins().left() - margins().right();
  std::vector<Place> places;
  int offset = margins().top();
  for (QLayoutItem* item : shown()) {
    const int extent = heightOf(item, inside);
    places.push_back({item, offset, extent});
    offset += extent + spacing();
  }
  return places;
}

// The height goes with the width: this is the least of all.
QSize RowOrColumn::minimumSize() const {
  QSize least(0, 0);
  for (QLayoutItem* item : shown()) least = least.expandedTo(item->minimumSize());
  return least.grownBy(margins());
}

QSize RowOrColumn::sizeHint() const {
  int width = margins().left() + margins().right();
  const auto items = shown();
  for (QLayoutItem* item : items) width += item->sizeHint().width();
  width += std::max<int>(static_cast<int>(items.size()) - 1, 0) * spacing();
  return {width, heightForWidth(width)};
}

int RowOrColumn::heightForWidth(int width) const {
  if (width < wantedWidth()) {
    const auto places = column(width);
    if (places.empty()) return 0;
    return places.back().offset + places.back().extent + margins().bottom();
  }
  int highest = 0;
  for (const Place& place : row(width)) highest = std::max(highest, heightOf(place.item, place.extent));
  return highest + margins().top() + margins().bottom();
}

void RowOrColumn::setGeometry(const QRect& rect) {
  // Not the row's own, which would place the items.
  QLayout::setGeometry(rect);  // NOLINT(bugprone-parent-virtual-call)
  const QMargins around = margins();
  const bool stacked = rect.width() < wantedWidth();
  const Qt::LayoutDirection direction =
      parentWidget() != nullptr ? parentWidget()->layoutDirection() : Qt::LeftToRight;
  for (const Place& place : stacked ? column(rect.width()) : row(rect.width())) {
    const QRect spot = stacked ? QRect(rect.x() + around.left(), rect.y() + place.offset,
                                       rect.width() - around.left() - around.right(), place.extent)
                               : QRect(rect.x() + place.offset, rect.y() + around.top(), place.extent,
                                       rect.height() - around.top() - around.bottom());
    place.item->setGeometry(QStyle::visualRect(direction, rect, spot));
  }
}

}  // namespace halvorn
