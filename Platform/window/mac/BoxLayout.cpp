#include "Platform/window/mac/BoxLayout.h"

#include <algorithm>

namespace halvorn {
namespace {

bool takesPart(const Box& box) {
  if (box.kind == Box::Kind::Space) return true;
  if (box.kind == Box::Kind::View) return box.isShown();
  return std::any_of(box.children.begin(), box.children.end(),
                     [](const Box& child) { return child.kind != Box::Kind::Space && takesPart(child); });
}

bool grows(const Box& box) { return box.stretch > 0 || (box.kind == Box::Kind::Space && box.size == 0.0); }

// How much each child gets along the row: what it needs, and those that stretch the rest.
std::vector<double> widthsIn(const Box& row, double width) {
  std::vector<double> widths;
  double left = width;
  int growing = 0;
  bool isFirst = true;
  for (const Box& child : row.children) {
    const bool isIn = takesPart(child);
    if (isIn && !isFirst) left -= row.spacing;
    isFirst = isFirst && !isIn;
    growing += isIn && grows(child) ? std::max(1, child.stretch) : 0;
    const double needed = isIn && !grows(child) ? neededBy(child, width).width : 0.0;
    widths.push_back(needed);
    left -= needed;
  }
  for (std::size_t i = 0; i < widths.size(); ++i) {
    const Box& child = row.children[i];
    if (growing > 0 && takesPart(child) && grows(child))
      widths[i] = std::max(0.0, left) * std::max(1, child.stretch) / growing;
  }
  return widths;
}

Extent neededByRow(const Box& row, double width) {
  const std::vector<double> widths = widthsIn(row, width);
  Extent needed;
  bool isFirst = true;
  for (std::size_t i = 0; i < widths.size(); ++i) {
    const Box& child = row.children[i];
    if (!takesPart(child)) continue;
    const bool isFree = grows(child);
    const Extent size = neededBy(child, isFree ? widths[i] : width);
    needed.width += (isFirst ? 0.0 : row.spacing) + (isFree ? size.width : widths[i]);
    needed.height = std::max(needed.height, size.height);
    isFirst = false;
  }
  return needed;
}

Extent neededByColumn(const Box& column, double width) {
  Extent needed;
  bool isFirst = true;
  for (const Box& child : column.children) {
    if (!takesPart(child)) continue;
    const Extent size = neededBy(child, width);
    needed.width = std::max(needed.width, size.width);
    needed.height += (isFirst ? 0.0 : column.spacing) + size.height;
    isFirst = false;
  }
  return needed;
}

void placeRow(const Box& row, const Rect& into, Direction direction) {
  const std::vector<double> widths = widthsIn(row, into.width);
  double x = into.x;
  bool isFirst = true;
  for (std::size_t i = 0; i < widths.size(); ++i) {
    const Box& child = row.children[i];
    if (!takesPart(child)) continue;
    x += isFirst ? 0.0 : row.spacing;
    const double mirrored = into.x + into.width - (x - into.x) - widths[i];
    const double height = std::min(into.height, neededBy(child, widths[i]).height);
    // A view stands in the middle of its row; what holds others has all of its height.
    const bool isView = child.kind == Box::Kind::View && !grows(child);
    const double y = isView ? into.y + (into.height - height) / 2 : into.y;
    placeBox(child,
             {.x = direction == Direction::RightToLeft ? mirrored : x,
              .y = y,
              .width = widths[i],
              .height = isView ? height : into.height},
             direction);
    x += widths[i];
    isFirst = false;
  }
}

void placeColumn(const Box& column, const Rect& into, Direction direction) {
  double left = into.height - neededByColumn(column, into.width).height;
  int growing = 0;
  for (const Box& child : column.children)
    growing += takesPart(child) && grows(child) ? std::max(1, child.stretch) : 0;
  double y = into.y;
  bool isFirst = true;
  left = std::max(0.0, left);
  for (const Box& child : column.children) {
    if (!takesPart(child)) continue;
    y += isFirst ? 0.0 : column.spacing;
    double height = neededBy(child, into.width).height;
    if (growing > 0 && grows(child)) height += left * std::max(1, child.stretch) / growing;
    placeBox(child, {.x = into.x, .y = y, .width = into.width, .height = height}, direction);
    y += height;
    isFirst = false;
  }
}

}  // namespace

Extent neededBy(const Box& box, double width) {
  if (box.kind == Box::Kind::Space) return {box.size, box.size};
  const double inner = std::max(0.0, width - box.left - box.right);
  Extent needed;
  if (box.kind == Box::Kind::View) needed = box.needed(inner);
  if (box.kind == Box::Kind::Row) needed = neededByRow(box, inner);
  if (box.kind == Box::Kind::Column) needed = neededByColumn(box, inner);
  return {needed.width + box.left + box.right, needed.height + box.top + box.bottom};
}

void placeBox(const Box& box, const Rect& into, Direction direction) {
  const Rect inner = {.x = into.x + (direction == Direction::RightToLeft ? box.right : box.left),
                      .y = into.y + box.top,
                      .width = std::max(0.0, into.width - box.left - box.right),
                      .height = std::max(0.0, into.height - box.top - box.bottom)};
  if (box.kind == Box::Kind::View) box.place(inner);
  if (box.kind == Box::Kind::Row) placeRow(box, inner, direction);
  if (box.kind == Box::Kind::Column) placeColumn(box, inner, direction);
}

}  // namespace halvorn
