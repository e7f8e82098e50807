// A color: what views, fields and drawing accept.
//
// A question about components of another model than the color's own is answered as if the
// color had been converted first. "Nothing" is what is answered where there is no color at
// all: 0, null, nullopt, no components.
//
// Thread: as the implementation says; plain colors any.
// Why: docs/decisions/019-colors.md
#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "Core/ColorModels.h"
#include "Core/ColorSpace.h"
#include "Core/KeyedArchive.h"
#include "Core/Text.h"
#include "Platform/color/GraphicsContext.h"

namespace halvorn {

class Color;
using ColorPointer = std::shared_ptr<const Color>;  // null for no color

// How a control shows what happens to it.
enum class ColorSystemEffect { None, Pressed, DeepPressed, Disabled, Rollover };

class Color : public Archivable {
 public:
  // --- the space and its components

  [[nodiscard]] virtual const ColorSpace* colorSpace() const = 0;  // lives for ever
  // The same color, as nearly as the space has it.
  [[nodiscard]] virtual ColorPointer colorUsingColorSpace(const ColorSpace& space) const = 0;
  [[nodiscard]] virtual OptionalText colorSpaceName() const = 0;  // "CalibratedRGB", "Named"
  // Null when there is no space of that name, or the color cannot be told in it.
  [[nodiscard]] virtual ColorPointer colorUsingColorSpaceName(const Text& name) const = 0;
  [[nodiscard]] virtual int numberOfComponents() const = 0;             // alpha counted
  [[nodiscard]] virtual std::vector<double> getComponents() const = 0;  // alpha the last

  // Of the color in red, green and blue; the hue, saturation and brightness of the same.
  [[nodiscard]] virtual double redComponent() const = 0;
  [[nodiscard]] virtual double greenComponent() const = 0;
  [[nodiscard]] virtual double blueComponent() const = 0;
  [[nodiscard]] virtual std::optional<RedGreenBlueAlpha> getRed() const = 0;
  [[nodiscard]] virtual double hueComponent() const = 0;
  [[nodiscard]] virtual double saturationComponent() const = 0;
  [[nodiscard]] virtual double brightnessComponent() const = 0;
  [[nodiscard]] virtual std::optional<HueSaturationBrightnessAlpha> getHue() const = 0;

  // Of the color as a grey.
  [[nodiscard]] virtual double whiteComponent() const = 0;
  [[nodiscard]] virtual std::optional<WhiteAlpha> getWhite() const = 0;

  // Of the color in inks.
  [[nodiscard]] virtual double cyanComponent() const = 0;
  [[nodiscard]] virtual double magentaComponent() const = 0;
  [[nodiscard]] virtual double yellowComponent() const = 0;
  [[nodiscard]] virtual double blackComponent() const = 0;
  [[nodiscard]] virtual std::optional<CyanMagentaYellowBlackAlpha> getCyan() const = 0;

  [[nodiscard]] virtual double alphaComponent() const = 0;  // 0 is seen through, 1 covers
  // The color as drawing takes it.
  [[nodiscard]] virtual std::optional<DeviceColor> CGColor() const = 0;

  // Names, the last two as people read them; null for a color that is in no catalog.
  [[nodiscard]] virtual OptionalText catalogNameComponent() const = 0;
  [[nodiscard]] virtual OptionalText colorNameComponent() const = 0;
  [[nodiscard]] virtual OptionalText localizedCatalogNameComponent() const = 0;
  [[nodiscard]] virtual OptionalText localizedColorNameComponent() const = 0;

  // Has what is drawn from now on be of this color: lines, areas. Nothing is changed where there is no color.
  virtual void setStroke(GraphicsContext& context) const = 0;
  virtual void setFill(GraphicsContext& context) const = 0;
  virtual void set(GraphicsContext& context) const = 0;  // both

  // --- colors made of this one

  // Nearer to white or to black; level 0 changes nothing, 1 all.
  [[nodiscard]] virtual ColorPointer highlightWithLevel(double level) const = 0;
  [[nodiscard]] virtual ColorPointer shadowWithLevel(double level) const = 0;
  [[nodiscard]] virtual ColorPointer colorWithAlphaComponent(double alpha) const = 0;  // else the same
  // `fraction` of the other color and the rest of this one; null without another color.
  [[nodiscard]] virtual ColorPointer blendedColorWithFraction(double fraction,
                                                              const ColorPointer& ofColor) const = 0;
  // As a control of this color shows what happens to it.
  [[nodiscard]] virtual ColorPointer colorWithSystemEffect(ColorSystemEffect effect) const = 0;
};

}  // namespace halvorn
