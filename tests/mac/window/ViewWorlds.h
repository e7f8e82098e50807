// What the cases of the contract are asked of on macOS: views of AppKit's in a scroll view.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "Platform/window/Views.h"

namespace halvorn {

// A document of 1000 x 2000 in a place of 200 x 100; in it a part of 500 x 500 whose lower left corner is at (0, 1000); and
// three views in one holder.
class MacViewWorld {
 public:
  MacViewWorld();
  ~MacViewWorld();
  View& document();
  View& part();
  View& outside();
  void placeAt(const Point& origin);
  Point origin();
  bool isAnimating();
  void finishAnimations();
  View& sibling(std::size_t index);
  // The numbers of the siblings, the frontmost last.
  std::string order();

 private:
  struct Parts;
  std::unique_ptr<Parts> parts_;
};
using Worlds = testing::Types<MacViewWorld>;

}  // namespace halvorn
