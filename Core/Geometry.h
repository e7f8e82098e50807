// Points and rectangles of views.
#pragma once

namespace halvorn {

struct Point {
  double x = 0.0;
  double y = 0.0;
  friend bool operator==(const Point&, const Point&) = default;
};

// The origin is the corner with the smallest coordinates.
struct Rect {
  double x = 0.0;
  double y = 0.0;
  double width = 0.0;
  double height = 0.0;
  friend bool operator==(const Rect&, const Rect&) = default;
};

}  // namespace halvorn
