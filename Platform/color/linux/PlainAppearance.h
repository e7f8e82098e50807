// One of the two looks. It fits no name but its own.
#pragma once

#include <algorithm>
#include <memory>

#include "Platform/color/Appearances.h"
#include "Platform/color/InterfaceStyleSetting.h"

namespace halvorn {

class PlainAppearance : public Appearance {
 public:
  explicit PlainAppearance(AppearanceName name) : name_(name) {}
  std::optional<AppearanceName> bestMatchFromAppearancesWithNames(
      const std::vector<AppearanceName>& names) const override {
    if (std::find(names.begin(), names.end(), name_) == names.end()) return std::nullopt;
    return name_;
  }

 private:
  AppearanceName name_;
};

// For a program that draws nothing: the look that the desktop's setting names, asked for each time.
class StyledAppearances : public Appearances {
 public:
  explicit StyledAppearances(InterfaceStyleSetting& setting) : setting_(setting) {}
  AppearancePointer currentAppearance() const override { return nullptr; }
  AppearancePointer effectiveAppearance() const override {
    const bool isDark = setting_.current().has_value();
    return std::make_shared<PlainAppearance>(isDark ? AppearanceName::DarkAqua : AppearanceName::Aqua);
  }

 private:
  InterfaceStyleSetting& setting_;
};

}  // namespace halvorn
