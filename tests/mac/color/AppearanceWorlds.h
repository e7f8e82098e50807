// What the cases of the contract are asked of on macOS: the adapters, in drawings that a test makes up.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "Platform/color/mac/MacAppearances.h"
#include "Platform/color/mac/MacGraphicsContext.h"
#include "tests/mac/frameworks/FakeMac.h"

namespace halvorn {

using Act = std::function<void()>;

class MacAppearanceWorld {
 public:
  MacAppearanceWorld() { fakemac::reset(); }
  void setDesktop(AppearanceName name) { fakemac::state().applicationAppearance = nameOf(name); }
  Appearances& appearances() { return appearances_; }
  GraphicsContext& graphics() { return graphics_; }
  DeviceColor stroked() { return colorOf(fakemac::state().strokeColor); }
  DeviceColor filled() { return colorOf(fakemac::state().fillColor); }
  void draw(AppearanceName held, const Act& act) {
    const std::string before = fakemac::state().currentAppearance;
    fakemac::state().currentAppearance =
        held == AppearanceName::Inherited ? fakemac::state().applicationAppearance : nameOf(held);
    act();
    fakemac::state().currentAppearance = before;
  }
  void drawInside(AppearanceName holder, const Act& act) { draw(holder, act); }

 private:
  static std::string nameOf(AppearanceName name) {
    return name == AppearanceName::DarkAqua ? "DarkAqua" : "Aqua";
  }
  static DeviceColor colorOf(const fakemac::Color& color) {
    return {color.red, color.green, color.blue, color.alpha};
  }

  MacAppearances appearances_;
  MacGraphicsContext graphics_;
};
using AppearanceWorlds = testing::Types<MacAppearanceWorld>;

}  // namespace halvorn
