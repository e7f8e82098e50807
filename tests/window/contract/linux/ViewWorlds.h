// What the cases of the contract are asked of on Linux: views that a test writes down, and the toolkit's in a scroll area.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "tests/fakes/FakeScrollView.h"
#include "tests/support/OffscreenApplication.h"
#include "tests/window/contract/ScrolledWidgets.h"

namespace halvorn {

[[maybe_unused]] inline OffscreenApplication& desktop = offscreenApplication();

// A document of 1000 x 2000 in a place of 200 x 100; in it a part of 500 x 500 whose lower left corner is at
// (0, 1000); and three views in one holder.
class FakeWorld {
 public:
  FakeWorld() {
    for (const auto& sibling : siblings_) holder_->addSubview(*sibling, ViewPosition::Above, nullptr);
  }
  View& document() { return document_; }
  View& part() { return part_; }
  View& outside() { return *holder_; }
  void placeAt(const Point& origin) { scrollView_.origin_ = origin; }
  Point origin() { return scrollView_.origin_; }
  bool isAnimating() { return scrollView_.isAnimating(); }
  void finishAnimations() { scrollView_.finishAnimations(); }

  View& sibling(std::size_t index) { return *siblings_[index]; }
  // The numbers of the siblings, the frontmost last.
  std::string order() {
    std::string result;
    for (const FakeTreeView* view : holder_->subviews_) {
      for (std::size_t i = 0; i < siblings_.size(); ++i) {
        if (siblings_[i].get() == view) result += std::to_string(i);
      }
    }
    return result;
  }

 private:
  Calls calls_;
  FakeScrollView scrollView_{calls_, {1000, 2000}, {200, 100}};
  FakeDocument document_{calls_, scrollView_};
  FakeDocument part_{calls_, scrollView_, {0, 1000, 500, 500}};
  std::shared_ptr<FakeTreeView> holder_ = std::make_shared<FakeTreeView>(calls_, "holder");
  std::vector<std::shared_ptr<FakeTreeView>> siblings_ = {std::make_shared<FakeTreeView>(calls_, "0"),
                                                          std::make_shared<FakeTreeView>(calls_, "1"),
                                                          std::make_shared<FakeTreeView>(calls_, "2")};
};

class RealWorld {
 public:
  RealWorld() { widgets_.show(); }
  View& document() { return document_; }
  View& part() { return part_; }
  View& outside() { return outside_; }
  void placeAt(const Point& origin) { widgets_.placeAt(origin); }
  Point origin() { return widgets_.origin(); }
  bool isAnimating() { return widgets_.isAnimating(); }
  void finishAnimations() { widgets_.finishAnimations(); }
  View& sibling(std::size_t index) { return *siblings_[index]; }
  std::string order() { return widgets_.order(); }

 private:
  ScrolledWidgets widgets_;
  QtWidgetView document_{*widgets_.document};
  QtWidgetView part_{*widgets_.part};
  QtWidgetView outside_{widgets_};
  std::vector<std::unique_ptr<QtWidgetView>> siblings_ = widgets_.viewsOfSiblings();
};

using Worlds = testing::Types<FakeWorld, RealWorld>;

}  // namespace halvorn
