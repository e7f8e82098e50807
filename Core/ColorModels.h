// Colors as numbers: red, green and blue; hue, saturation and brightness; the four printing inks.
//
// All numbers run from 0 to 1; what lies outside is moved to the nearer end, what
// is no number to 0. Thread: any.
#pragma once

namespace halvorn {

struct RedGreenBlueAlpha {  // light of three colors
  double red = 0.0;         // 0 none of it, 1 all
  double green = 0.0;       // likewise
  double blue = 0.0;        // likewise
  double alpha = 0.0;       // 0 is seen through, 1 covers
  friend bool operator==(const RedGreenBlueAlpha&, const RedGreenBlueAlpha&) = default;
};

struct HueSaturationBrightnessAlpha {  // the same light, as people describe it
  double hue = 0.0;                    // 0 red, 1/3 green, 2/3 blue; 0 for greys
  double saturation = 0.0;             // 0 grey, 1 pure
  double brightness = 0.0;             // 0 black
  double alpha = 0.0;                  // 0 is seen through, 1 covers
  friend bool operator==(const HueSaturationBrightnessAlpha&, const HueSaturationBrightnessAlpha&) = default;
};

struct WhiteAlpha {    // a grey
  double white = 0.0;  // 0 black, 1 white
  double alpha = 0.0;  // 0 is seen through, 1 covers
  friend bool operator==(const WhiteAlpha&, const WhiteAlpha&) = default;
};

struct CyanMagentaYellowBlackAlpha {  // inks on white paper
  double cyan = 0.0;                  // 0 no ink, 1 all of it
  double magenta = 0.0;               // likewise
  double yellow = 0.0;                // likewise
  double black = 0.0;                 // likewise
  double alpha = 0.0;                 // 0 is seen through, 1 covers
  friend bool operator==(const CyanMagentaYellowBlackAlpha&, const CyanMagentaYellowBlackAlpha&) = default;
};

[[nodiscard]] double clampedToUnit(double value);  // the nearest number from 0 to 1
// The same color in the other model. A grey has the hue 0.
[[nodiscard]] HueSaturationBrightnessAlpha hueSaturationBrightness(const RedGreenBlueAlpha& color);
[[nodiscard]] RedGreenBlueAlpha redGreenBlue(const HueSaturationBrightnessAlpha& color);
// As much black as the color allows; the inks cover what is left.
[[nodiscard]] CyanMagentaYellowBlackAlpha cyanMagentaYellowBlack(const RedGreenBlueAlpha& color);
[[nodiscard]] RedGreenBlueAlpha redGreenBlue(const CyanMagentaYellowBlackAlpha& color);

}  // namespace halvorn
