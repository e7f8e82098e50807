// Colors as numbers: red, green and blue; hue, saturation and brightness; the four printing inks.
//
// All numbers run from 0 to 1; what lies outside is moved to the nearer end, what
// is no number to 0. Thread: any.
#pragma once

namespace halvorn {

struct RedGreenBlueAlpha {
  double red = 0.0;
  double green = 0.0;
  double blue = 0.0;
  double alpha = 0.0;
  friend bool operator==(const RedGreenBlueAlpha&, const RedGreenBlueAlpha&) = default;
};

struct HueSaturationBrightnessAlpha {
  double hue = 0.0;  // 0 red, 1/3 green, 2/3 blue; 0 for greys
  double saturation = 0.0;
  double brightness = 0.0;
  double alpha = 0.0;
  friend bool operator==(const HueSaturationBrightnessAlpha&, const HueSaturationBrightnessAlpha&) = default;
};

struct WhiteAlpha {
  double white = 0.0;
  double alpha = 0.0;
  friend bool operator==(const WhiteAlpha&, const WhiteAlpha&) = default;
};

struct CyanMagentaYellowBlackAlpha {
  double cyan = 0.0;
  double magenta = 0.0;
  double yellow = 0.0;
  double black = 0.0;
  double alpha = 0.0;
  friend bool operator==(const CyanMagentaYellowBlackAlpha&, const CyanMagentaYellowBlackAlpha&) = default;
};

[[nodiscard]] double clampedToUnit(double value);

[[nodiscard]] HueSaturationBrightnessAlpha hueSaturationBrightness(const RedGreenBlueAlpha& color);
[[nodiscard]] RedGreenBlueAlpha redGreenBlue(const HueSaturationBrightnessAlpha& color);
// As much black as the color allows; the inks cover what is left.
[[nodiscard]] CyanMagentaYellowBlackAlpha cyanMagentaYellowBlack(const RedGreenBlueAlpha& color);
[[nodiscard]] RedGreenBlueAlpha redGreenBlue(const CyanMagentaYellowBlackAlpha& color);

}  // namespace halvorn
