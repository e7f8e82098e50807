// Colors with names.
//
//   const ColorCatalog web = ColorCatalog::web(strings);
//   web.colorNamed("tomato")->localizedColorNameComponent();
//
// Thread: any.
#pragma once

#include <cstdint>
#include <map>
#include <string_view>
#include <vector>

#include "KTStuff/KTClasses/PlainColor.h"

namespace halvorn {

class LocalizedStrings;

// A plain color that also knows its names. What is made of it has none, except
// by asking for the space "Named".
class CatalogColor : public PlainColor {
 public:
  struct Names {            // the second pair as people read it
    Text catalog;           // "Web"
    Text color;             // "rebeccapurple"
    Text localizedCatalog;  // as the table translates it
    Text localizedColor;    // as the table translates it
  };
  // As a plain color of that space, with these names.
  CatalogColor(Names names, const ColorSpace& space, std::vector<double> components, double alpha = 1.0);

  OptionalText colorSpaceName() const override { return Text(kSpaceName); }
  ColorPointer colorUsingColorSpaceName(const Text& name) const override;
  OptionalText catalogNameComponent() const override { return names_.catalog; }
  OptionalText colorNameComponent() const override { return names_.color; }
  OptionalText localizedCatalogNameComponent() const override { return names_.localizedCatalog; }
  OptionalText localizedColorNameComponent() const override { return names_.localizedColor; }

  static constexpr char kSpaceName[] = "Named";  // asked for, it answers the color itself

 private:
  const Names names_;
};

class ColorCatalog {
 public:
  // Names are translated by the table's entries for them.
  ColorCatalog(const Text& name, const std::map<Text, std::uint32_t>& colors,  // 0xRRGGBB
               const LocalizedStrings& strings);
  // The names that web pages know, under the catalog name "Web".
  static ColorCatalog web(const LocalizedStrings& strings);

  // Null when there is none of that name.
  [[nodiscard]] ColorPointer colorNamed(const Text& name) const;
  [[nodiscard]] std::vector<Text> colorNames() const;  // in their order

 private:
  std::map<Text, ColorPointer> colors_;
};

}  // namespace halvorn
