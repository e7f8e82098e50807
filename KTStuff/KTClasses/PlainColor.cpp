#include "KTStuff/KTClasses/PlainColor.h"

#include <utility>

namespace halvorn {

namespace {

// How strongly the states of a control show.
constexpr double kPressedShadow = 0.15;
constexpr double kDeepPressedShadow = 0.30;
constexpr double kRolloverHighlight = 0.10;
constexpr double kDisabledAlpha = 0.5;

constexpr char kSpaceKey[] = "colorSpaceName";
constexpr char kComponentsKey[] = "components";
constexpr char kAlphaKey[] = "alpha";

std::vector<double> fitting(const ColorSpace& space, std::vector<double> components) {
  components.resize(space.numberOfComponents());
  for (double& component : components) component = clampedToUnit(component);
  return components;
}

ColorPointer made(const ColorSpace& space, std::vector<double> components, double alpha) {
  return std::make_shared<PlainColor>(space, std::move(components), alpha);
}

}  // namespace

PlainColor::PlainColor(const ColorSpace& space, std::vector<double> components, double alpha)
    : space_(space), components_(fitting(space, std::move(components))), alpha_(clampedToUnit(alpha)) {}

ColorPointer PlainColor::calibratedRGB(double red, double green, double blue, double alpha) {
  return made(ColorSpace::calibratedRGB(), {red, green, blue}, alpha);
}

ColorPointer PlainColor::deviceRGB(double red, double green, double blue, double alpha) {
  return made(ColorSpace::deviceRGB(), {red, green, blue}, alpha);
}

ColorPointer PlainColor::sRGB(double red, double green, double blue, double alpha) {
  return made(ColorSpace::sRGB(), {red, green, blue}, alpha);
}

ColorPointer PlainColor::calibratedHSB(double hue, double saturation, double brightness, double alpha) {
  const auto color = redGreenBlue(HueSaturationBrightnessAlpha{hue, saturation, brightness, alpha});
  return calibratedRGB(color.red, color.green, color.blue, color.alpha);
}

ColorPointer PlainColor::calibratedWhite(double white, double alpha) {
  return made(ColorSpace::calibratedWhite(), {white}, alpha);
}

ColorPointer PlainColor::deviceWhite(double white, double alpha) {
  return made(ColorSpace::deviceWhite(), {white}, alpha);
}

ColorPointer PlainColor::deviceCMYK(double cyan, double magenta, double yellow, double black, double alpha) {
  return made(ColorSpace::deviceCMYK(), {cyan, magenta, yellow, black}, alpha);
}

std::vector<double> PlainColor::componentsIn(const ColorSpace& space) const {
  return &space == &space_ ? components_ : space_.converted(components_, space);
}

ColorPointer PlainColor::colorUsingColorSpace(const ColorSpace& space) const {
  return made(space, componentsIn(space), alpha_);
}

ColorPointer PlainColor::colorUsingColorSpaceName(const Text& name) const {
  const ColorSpace* space = ColorSpace::named(name);
  return space != nullptr ? PlainColor::colorUsingColorSpace(*space) : nullptr;
}

int PlainColor::numberOfComponents() const { return static_cast<int>(components_.size()) + 1; }

std::vector<double> PlainColor::getComponents() const {
  std::vector<double> all = components_;
  all.push_back(alpha_);
  return all;
}

RedGreenBlueAlpha PlainColor::rgb() const {
  const bool isRGB = space_.model() == ColorSpace::Model::RGB;
  const auto components = isRGB ? components_ : componentsIn(ColorSpace::calibratedRGB());
  return {components[0], components[1], components[2], alpha_};
}

double PlainColor::whiteComponent() const {
  const bool isGray = space_.model() == ColorSpace::Model::Gray;
  return isGray ? components_[0] : componentsIn(ColorSpace::calibratedWhite())[0];
}

CyanMagentaYellowBlackAlpha PlainColor::inks() const {
  const auto components = componentsIn(ColorSpace::deviceCMYK());
  return {components[0], components[1], components[2], components[3], alpha_};
}

DeviceColor PlainColor::deviceColor() const {
  const auto components = componentsIn(ColorSpace::deviceRGB());
  return {components[0], components[1], components[2], alpha_};
}

void PlainColor::set(GraphicsContext& context) const {
  setStroke(context);
  setFill(context);
}

ColorPointer PlainColor::highlightWithLevel(double level) const {
  return blendedColorWithFraction(level, calibratedWhite(1.0, alpha_));
}

ColorPointer PlainColor::shadowWithLevel(double level) const {
  return blendedColorWithFraction(level, calibratedWhite(0.0, alpha_));
}

ColorPointer PlainColor::colorWithAlphaComponent(double alpha) const {
  return made(space_, components_, alpha);
}

ColorPointer PlainColor::blendedColorWithFraction(double fraction, const ColorPointer& ofColor) const {
  if (!ofColor) return nullptr;
  const ColorSpace& space = ColorSpace::calibratedRGB();
  const ColorPointer other = ofColor->colorUsingColorSpace(space);
  if (!other) return nullptr;
  std::vector<double> mixed = componentsIn(space);
  mixed.push_back(alpha_);
  const std::vector<double> others = other->getComponents();
  const double part = clampedToUnit(fraction);
  for (std::size_t i = 0; i < mixed.size(); ++i) mixed[i] = (1.0 - part) * mixed[i] + part * others[i];
  const double alpha = mixed.back();
  return made(space, mixed, alpha);
}

ColorPointer PlainColor::colorWithSystemEffect(ColorSystemEffect effect) const {
  switch (effect) {
    case ColorSystemEffect::Pressed:
      return shadowWithLevel(kPressedShadow);
    case ColorSystemEffect::DeepPressed:
      return shadowWithLevel(kDeepPressedShadow);
    case ColorSystemEffect::Disabled:
      return colorWithAlphaComponent(alpha_ * kDisabledAlpha);
    case ColorSystemEffect::Rollover:
      return highlightWithLevel(kRolloverHighlight);
    case ColorSystemEffect::None:
      break;
  }
  return made(space_, components_, alpha_);
}

void PlainColor::encodeWithCoder(KeyedEncoder& encoder) const {
  encoder.encodeText(space_.name(), kSpaceKey);
  encoder.encodeReals(components_, kComponentsKey);
  encoder.encodeReal(alpha_, kAlphaKey);
}

ColorPointer PlainColor::initWithCoder(const KeyedDecoder& decoder) {
  const OptionalText name = decoder.decodeText(kSpaceKey);
  const ColorSpace* space = name ? ColorSpace::named(*name) : nullptr;
  const auto components = decoder.decodeReals(kComponentsKey);
  const auto alpha = decoder.decodeReal(kAlphaKey);
  if (space == nullptr || !components || components->size() != space->numberOfComponents() || !alpha) {
    return nullptr;
  }
  return made(*space, *components, *alpha);
}

}  // namespace halvorn
