// A color with a variant for the light and one for the dark appearance.
//
//   const auto paper = colors.lightColor(PlainColor::calibratedRGB(1, 1, 0.9),
//                                        PlainColor::calibratedRGB(0.1, 0.1, 0.1));
//   textView.setBackgroundColor(paper);   // follows the appearance from now on
//
// Each question is answered by the variant that fits the appearance in force at that moment; nothing is kept.
// Colors made of it are those of the variant and stay what they are.
//
// Thread: main, where things are drawn.
#pragma once

#include <memory>

#include "Platform/color/Color.h"

namespace halvorn {

class Appearances;
class KTUtilitiesTheme;
class Log;
class SystemFacts;

struct KTDynamicColorServices {  // what decides between light and dark
  const Appearances& appearances;
  KTUtilitiesTheme& theme;
  const SystemFacts& system;
  const Log& log;
};

enum class UseGlobalAppearance { No, Yes };  // see the function of that name

class KTDynamicColor : public Color, public std::enable_shared_from_this<KTDynamicColor> {
 public:
  // Made by the KTDynamicColorClass. A null dark color means that the light one is always used; a null light
  // one answers nothing. The services must outlive the color.
  KTDynamicColor(const KTDynamicColorServices& services, ColorPointer aquaColor, ColorPointer darkAquaColor);

  // Whether the style of the whole desktop is asked before the appearance of what is
  // drawn. Answers the color itself.
  std::shared_ptr<KTDynamicColor> useGlobalAppearance(UseGlobalAppearance use);
  // The variant to be used now, the object itself. Logs: "global dark color" at
  // each call that the flag decides.
  [[nodiscard]] ColorPointer effectiveColor() const;

  const ColorSpace* colorSpace() const override;
  ColorPointer colorUsingColorSpace(const ColorSpace& space) const override;
  OptionalText colorSpaceName() const override;
  ColorPointer colorUsingColorSpaceName(const Text& name) const override;
  int numberOfComponents() const override;
  std::vector<double> getComponents() const override;
  double redComponent() const override;
  double greenComponent() const override;
  double blueComponent() const override;
  std::optional<RedGreenBlueAlpha> getRed() const override;
  double hueComponent() const override;
  double saturationComponent() const override;
  double brightnessComponent() const override;
  std::optional<HueSaturationBrightnessAlpha> getHue() const override;
  double whiteComponent() const override;
  std::optional<WhiteAlpha> getWhite() const override;
  double cyanComponent() const override;
  double magentaComponent() const override;
  double yellowComponent() const override;
  double blackComponent() const override;
  std::optional<CyanMagentaYellowBlackAlpha> getCyan() const override;
  double alphaComponent() const override;
  std::optional<DeviceColor> CGColor() const override;
  OptionalText catalogNameComponent() const override;
  OptionalText colorNameComponent() const override;
  OptionalText localizedCatalogNameComponent() const override;
  OptionalText localizedColorNameComponent() const override;
  void setStroke(GraphicsContext& context) const override;
  void setFill(GraphicsContext& context) const override;
  void set(GraphicsContext& context) const override;
  ColorPointer highlightWithLevel(double level) const override;
  ColorPointer shadowWithLevel(double level) const override;
  ColorPointer colorWithAlphaComponent(double alpha) const override;
  ColorPointer blendedColorWithFraction(double fraction, const ColorPointer& ofColor) const override;
  ColorPointer colorWithSystemEffect(ColorSystemEffect effect) const override;

  static constexpr char kArchivedClass[] = "KTDynamicColor";  // in archives
  Text archivedClass() const override { return kArchivedClass; }
  // The light variant always, null included; the dark one only when there is one; never the flag.
  void encodeWithCoder(KeyedEncoder& encoder) const override;

 private:
  // What the method of the effective color answers; nothing when there is none.
  template <typename Result, typename... Parameters, typename... Arguments>
  Result forward(Result (Color::*method)(Parameters...) const, Arguments&&... arguments) const;

  const KTDynamicColorServices services_;
  const ColorPointer aquaColor_;
  const ColorPointer darkAquaColor_;
  UseGlobalAppearance useGlobalAppearance_ = UseGlobalAppearance::No;
};

}  // namespace halvorn
