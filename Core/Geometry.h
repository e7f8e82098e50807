// Points and rectangles of views.
#pragma once

namespace halvorn {

struct Point {     // a place in a view
  double x = 0.0;  // grows to the right
  double y = 0.0;  // grows upwards
  friend bool operator==(const Point&, const Point&) = default;
};

// The origin is the corner with the smallest coordinates.
struct Rect {
  double x = 0.0;       // of the left edge
  double y = 0.0;       // of the lower edge
  double width = 0.0;   // never negative
  double height = 0.0;  // never negative
  friend bool operator==(const Rect&, const Rect&) = default;
};

}  // namespace halvorn
