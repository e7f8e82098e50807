// Rows and columns of views, measured and placed. Plain arithmetic: y grows downwards here.
#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "Core/Geometry.h"

namespace halvorn {

struct Extent {
  double width = 0.0;
  double height = 0.0;
};

struct Box {
  enum class Kind { Row, Column, View, Space };

  Kind kind = Kind::Column;
  double spacing = 0.0;
  double left = 0.0;
  double top = 0.0;
  double right = 0.0;
  double bottom = 0.0;
  int stretch = 0;
  double size = 0.0;  // of a space
  // Of a view: what it needs in that width; whether it takes part; where it stands from now on.
  std::function<Extent(double width)> needed = {};
  std::function<bool()> isShown = {};
  std::function<void(const Rect& place)> place = {};
  std::vector<Box> children = {};
};

enum class Direction { LeftToRight, RightToLeft };

// The size that the box needs where it may be that wide.
[[nodiscard]] Extent neededBy(const Box& box, double width);
// Places everything in the box; what is left over goes to what stretches.
void placeBox(const Box& box, const Rect& into, Direction direction);

}  // namespace halvorn
