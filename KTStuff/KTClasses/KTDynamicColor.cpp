#include "KTStuff/KTClasses/KTDynamicColor.h"

#include <utility>

#include "Core/Log.h"
#include "KTStuff/KTClasses/KTAvailability.h"
#include "KTStuff/KTClasses/KTUtilitiesTheme.h"
#include "Platform/color/Appearances.h"

namespace halvorn {

KTDynamicColor::KTDynamicColor(const KTDynamicColorServices& services, ColorPointer aquaColor,
                               ColorPointer darkAquaColor)
    : services_(services), aquaColor_(std::move(aquaColor)), darkAquaColor_(std::move(darkAquaColor)) {}

std::shared_ptr<KTDynamicColor> KTDynamicColor::useGlobalAppearance(UseGlobalAppearance use) {
  useGlobalAppearance_ = use;
  return shared_from_this();
}

ColorPointer KTDynamicColor::effectiveColor() const {
  if (!hasAppearances(services_.system)) return aquaColor_;

  if (useGlobalAppearance_ == UseGlobalAppearance::Yes && darkAquaColor_ &&
      services_.theme.darkAppearance()) {
    services_.log("global dark color");
    return darkAquaColor_;
  }

  AppearancePointer appearance = services_.appearances.currentAppearance();
  if (!appearance) appearance = services_.appearances.effectiveAppearance();
  std::optional<AppearanceName> bestMatch;
  if (appearance) {
    bestMatch =
        appearance->bestMatchFromAppearancesWithNames({AppearanceName::Aqua, AppearanceName::DarkAqua});
  }
  return darkAquaColor_ && bestMatch == AppearanceName::DarkAqua ? darkAquaColor_ : aquaColor_;
}

void KTDynamicColor::encodeWithCoder(KeyedEncoder& encoder) const {
  // KEEP: a missing light variant is written, a missing dark one is not.
  encoder.encodeObject(aquaColor_.get(), "aquaColor");
  if (darkAquaColor_) encoder.encodeObject(darkAquaColor_.get(), "darkAquaColor");
}

// Everything below: the same question to the effective color, in the order of the interface.

template <typename Result, typename... Parameters, typename... Arguments>
Result KTDynamicColor::forward(Result (Color::*method)(Parameters...) const, Arguments&&... arguments) const {
  const ColorPointer color = effectiveColor();
  if (!color) return Result();
  return ((*color).*method)(std::forward<Arguments>(arguments)...);
}

const ColorSpace* KTDynamicColor::colorSpace() const { return forward(&Color::colorSpace); }

ColorPointer KTDynamicColor::colorUsingColorSpace(const ColorSpace& space) const {
  return forward(&Color::colorUsingColorSpace, space);
}

OptionalText KTDynamicColor::colorSpaceName() const { return forward(&Color::colorSpaceName); }

ColorPointer KTDynamicColor::colorUsingColorSpaceName(const Text& name) const {
  return forward(&Color::colorUsingColorSpaceName, name);
}

int KTDynamicColor::numberOfComponents() const { return forward(&Color::numberOfComponents); }
std::vector<double> KTDynamicColor::getComponents() const { return forward(&Color::getComponents); }

double KTDynamicColor::redComponent() const { return forward(&Color::redComponent); }
double KTDynamicColor::greenComponent() const { return forward(&Color::greenComponent); }
double KTDynamicColor::blueComponent() const { return forward(&Color::blueComponent); }
std::optional<RedGreenBlueAlpha> KTDynamicColor::getRed() const { return forward(&Color::getRed); }

double KTDynamicColor::hueComponent() const { return forward(&Color::hueComponent); }
double KTDynamicColor::saturationComponent() const { return forward(&Color::saturationComponent); }
double KTDynamicColor::brightnessComponent() const { return forward(&Color::brightnessComponent); }
std::optional<HueSaturationBrightnessAlpha> KTDynamicColor::getHue() const { return forward(&Color::getHue); }

double KTDynamicColor::whiteComponent() const { return forward(&Color::whiteComponent); }
std::optional<WhiteAlpha> KTDynamicColor::getWhite() const { return forward(&Color::getWhite); }

double KTDynamicColor::cyanComponent() const { return forward(&Color::cyanComponent); }
double KTDynamicColor::magentaComponent() const { return forward(&Color::magentaComponent); }
double KTDynamicColor::yellowComponent() const { return forward(&Color::yellowComponent); }
double KTDynamicColor::blackComponent() const { return forward(&Color::blackComponent); }
std::optional<CyanMagentaYellowBlackAlpha> KTDynamicColor::getCyan() const {
  return forward(&Color::getCyan);
}

double KTDynamicColor::alphaComponent() const { return forward(&Color::alphaComponent); }
std::optional<DeviceColor> KTDynamicColor::CGColor() const { return forward(&Color::CGColor); }

OptionalText KTDynamicColor::catalogNameComponent() const { return forward(&Color::catalogNameComponent); }
OptionalText KTDynamicColor::colorNameComponent() const { return forward(&Color::colorNameComponent); }
OptionalText KTDynamicColor::localizedCatalogNameComponent() const {
  return forward(&Color::localizedCatalogNameComponent);
}
OptionalText KTDynamicColor::localizedColorNameComponent() const {
  return forward(&Color::localizedColorNameComponent);
}

void KTDynamicColor::setStroke(GraphicsContext& context) const { forward(&Color::setStroke, context); }
void KTDynamicColor::setFill(GraphicsContext& context) const { forward(&Color::setFill, context); }
void KTDynamicColor::set(GraphicsContext& context) const { forward(&Color::set, context); }

ColorPointer KTDynamicColor::highlightWithLevel(double level) const {
  return forward(&Color::highlightWithLevel, level);
}

ColorPointer KTDynamicColor::shadowWithLevel(double level) const {
  return forward(&Color::shadowWithLevel, level);
}

ColorPointer KTDynamicColor::colorWithAlphaComponent(double alpha) const {
  return forward(&Color::colorWithAlphaComponent, alpha);
}

ColorPointer KTDynamicColor::blendedColorWithFraction(double fraction, const ColorPointer& ofColor) const {
  return forward(&Color::blendedColorWithFraction, fraction, ofColor);
}

ColorPointer KTDynamicColor::colorWithSystemEffect(ColorSystemEffect effect) const {
  return forward(&Color::colorWithSystemEffect, effect);
}

}  // namespace halvorn
