// Appearances as a test sets them, and a drawing that writes down what it was told.
#pragma once

#include <algorithm>
#include <string>
#include <vector>

#include "Platform/color/Appearances.h"
#include "Platform/color/GraphicsContext.h"

namespace halvorn {

// Fits the names of its list, the first that it is asked for.
class FakeAppearance : public Appearance {
 public:
  explicit FakeAppearance(std::vector<AppearanceName> fitting) : fitting_(std::move(fitting)) {}
  std::optional<AppearanceName> bestMatchFromAppearancesWithNames(
      const std::vector<AppearanceName>& names) const override {
    asked = names;
    for (const AppearanceName name : names) {
      if (std::find(fitting_.begin(), fitting_.end(), name) != fitting_.end()) return name;
    }
    return std::nullopt;
  }
  mutable std::vector<AppearanceName> asked;

 private:
  std::vector<AppearanceName> fitting_;
};

class FakeAppearances : public Appearances {
 public:
  AppearancePointer currentAppearance() const override { return current; }
  AppearancePointer effectiveAppearance() const override { return effective; }

  static AppearancePointer named(AppearanceName name) {
    return std::make_shared<FakeAppearance>(std::vector{name});
  }
  // The drawing of a view with that appearance, until the next call.
  void draw(AppearanceName name) { current = named(name); }

  AppearancePointer current;  // nothing is drawn
  AppearancePointer effective = named(AppearanceName::Aqua);
};

class FakeGraphicsContext : public GraphicsContext {
 public:
  void setStrokeColor(const DeviceColor& color) override { stroke = color, ++changes; }
  void setFillColor(const DeviceColor& color) override { fill = color, ++changes; }

  std::optional<DeviceColor> stroke;
  std::optional<DeviceColor> fill;
  int changes = 0;
};

}  // namespace halvorn
