#include "Core/ColorModels.h"

#include <algorithm>
#include <cmath>

namespace halvorn {

double clampedToUnit(double value) {
  if (!(value > 0.0)) return 0.0;
  return std::min(value, 1.0);
}

HueSaturationBrightnessAlpha hueSaturationBrightness(const RedGreenBlueAlpha& color) {
  const double red = clampedToUnit(color.red);
  const double green = clampedToUnit(color.green);
  const double blue = clampedToUnit(color.blue);
  const double most = std::max({red, green, blue});
  const double range = most - std::min({red, green, blue});
  HueSaturationBrightnessAlpha result{0.0, 0.0, most, clampedToUnit(color.alpha)};
  if (range <= 0.0) return result;
  result.saturation = range / most;
  double sixths = 0.0;
  if (most == red) {
    sixths = (green - blue) / range;
  } else if (most == green) {
    sixths = 2.0 + (blue - red) / range;
  } else {
    sixths = 4.0 + (red - green) / range;
  }
  if (sixths < 0.0) sixths += 6.0;
  result.hue = clampedToUnit(sixths / 6.0);
  return result;
}

RedGreenBlueAlpha redGreenBlue(const HueSaturationBrightnessAlpha& color) {
  const double hue = clampedToUnit(color.hue);
  const double saturation = clampedToUnit(color.saturation);
  const double brightness = clampedToUnit(color.brightness);
  // How far from the brightest a component is: nothing within a sixth of its own hue, all opposite of it.
  const auto component = [&](double offset) {
    const double sixths = std::fmod(offset + hue * 6.0, 6.0);
    return brightness - brightness * saturation * std::clamp(std::min(sixths, 4.0 - sixths), 0.0, 1.0);
  };
  return {component(5.0), component(3.0), component(1.0), clampedToUnit(color.alpha)};
}

CyanMagentaYellowBlackAlpha cyanMagentaYellowBlack(const RedGreenBlueAlpha& color) {
  const double red = clampedToUnit(color.red);
  const double green = clampedToUnit(color.green);
  const double blue = clampedToUnit(color.blue);
  const double most = std::max({red, green, blue});
  const double alpha = clampedToUnit(color.alpha);
  if (most <= 0.0) return {0.0, 0.0, 0.0, 1.0, alpha};
  return {(most - red) / most, (most - green) / most, (most - blue) / most, 1.0 - most, alpha};
}

RedGreenBlueAlpha redGreenBlue(const CyanMagentaYellowBlackAlpha& color) {
  const double paper = 1.0 - clampedToUnit(color.black);
  return {(1.0 - clampedToUnit(color.cyan)) * paper, (1.0 - clampedToUnit(color.magenta)) * paper,
          (1.0 - clampedToUnit(color.yellow)) * paper, clampedToUnit(color.alpha)};
}

}  // namespace halvorn
