// Colors that stay what they are: components in a color space.
//
//   const ColorPointer red = PlainColor::calibratedRGB(0.75, 0.0, 0.0);
//   red->highlightWithLevel(0.2);
//
// Components from 0 to 1; what lies outside is moved to the nearer end. What is made of a plain color is a
// plain color. Thread: any; a color never changes.
#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "Platform/color/Color.h"

namespace halvorn {

class PlainColor : public Color {
 public:
  // Missing components are 0, those left over are dropped.
  PlainColor(const ColorSpace& space, std::vector<double> components, double alpha);

  // Of these components, in the space of that name.
  static ColorPointer calibratedRGB(double red, double green, double blue, double alpha = 1.0);
  static ColorPointer deviceRGB(double red, double green, double blue, double alpha = 1.0);
  static ColorPointer sRGB(double red, double green, double blue, double alpha = 1.0);
  // A hue of 1 is red again.
  static ColorPointer calibratedHSB(double hue, double saturation, double brightness, double alpha = 1.0);
  // Of these components, in the space of that name.
  static ColorPointer calibratedWhite(double white, double alpha = 1.0);
  static ColorPointer deviceWhite(double white, double alpha = 1.0);
  static ColorPointer deviceCMYK(double cyan, double magenta, double yellow, double black,
                                 double alpha = 1.0);

  const ColorSpace* colorSpace() const override { return &space_; }
  ColorPointer colorUsingColorSpace(const ColorSpace& space) const override;
  OptionalText colorSpaceName() const override { return space_.name(); }
  ColorPointer colorUsingColorSpaceName(const Text& name) const override;
  int numberOfComponents() const override;
  std::vector<double> getComponents() const override;
  double redComponent() const override { return rgb().red; }
  double greenComponent() const override { return rgb().green; }
  double blueComponent() const override { return rgb().blue; }
  std::optional<RedGreenBlueAlpha> getRed() const override { return rgb(); }
  double hueComponent() const override { return hueSaturationBrightness(rgb()).hue; }
  double saturationComponent() const override { return hueSaturationBrightness(rgb()).saturation; }
  double brightnessComponent() const override { return hueSaturationBrightness(rgb()).brightness; }
  std::optional<HueSaturationBrightnessAlpha> getHue() const override {
    return hueSaturationBrightness(rgb());
  }
  double whiteComponent() const override;
  std::optional<WhiteAlpha> getWhite() const override { return WhiteAlpha{whiteComponent(), alpha_}; }
  double cyanComponent() const override { return inks().cyan; }
  double magentaComponent() const override { return inks().magenta; }
  double yellowComponent() const override { return inks().yellow; }
  double blackComponent() const override { return inks().black; }
  std::optional<CyanMagentaYellowBlackAlpha> getCyan() const override { return inks(); }
  double alphaComponent() const override { return alpha_; }
  std::optional<DeviceColor> CGColor() const override { return deviceColor(); }
  OptionalText catalogNameComponent() const override { return std::nullopt; }
  OptionalText colorNameComponent() const override { return std::nullopt; }
  OptionalText localizedCatalogNameComponent() const override { return std::nullopt; }
  OptionalText localizedColorNameComponent() const override { return std::nullopt; }
  void setStroke(GraphicsContext& context) const override { context.setStrokeColor(deviceColor()); }
  void setFill(GraphicsContext& context) const override { context.setFillColor(deviceColor()); }
  void set(GraphicsContext& context) const override;
  ColorPointer colorWithAlphaComponent(double alpha) const override;
  // Blends are made in calibrated RGB, whatever the spaces of the colors.
  ColorPointer highlightWithLevel(double level) const override;
  ColorPointer shadowWithLevel(double level) const override;
  ColorPointer blendedColorWithFraction(double fraction, const ColorPointer& ofColor) const override;
  // Pressed and DeepPressed are darker, Rollover is lighter, Disabled has half the alpha.
  ColorPointer colorWithSystemEffect(ColorSystemEffect effect) const override;

  static constexpr char kArchivedClass[] = "PlainColor";  // in archives
  Text archivedClass() const override { return kArchivedClass; }
  void encodeWithCoder(KeyedEncoder& encoder) const override;
  // Null when the archive lacks a known space, as many numbers as it has components, or the alpha.
  [[nodiscard]] static ColorPointer initWithCoder(const KeyedDecoder& decoder);

 private:
  [[nodiscard]] std::vector<double> componentsIn(const ColorSpace& space) const;
  [[nodiscard]] RedGreenBlueAlpha rgb() const;
  [[nodiscard]] CyanMagentaYellowBlackAlpha inks() const;
  [[nodiscard]] DeviceColor deviceColor() const;

  const ColorSpace& space_;
  const std::vector<double> components_;
  const double alpha_;
};

}  // namespace halvorn
