// What the components of a color mean: which model they belong to and which light they stand for.
//
//   const ColorSpace& space = ColorSpace::displayP3();
//   space.converted({1.0, 0.0, 0.0}, ColorSpace::sRGB());
//
// There is one object for each space; two of the same space have the same address. Thread: any.
#pragma once

#include <array>
#include <vector>

#include "Core/Text.h"

namespace halvorn {

class ColorSpace {
 public:
  enum class Model { Gray, RGB, CMYK };  // how many numbers make a color, and of what

  // What the display shows, without further ado. Displays are sRGB here.
  static const ColorSpace& deviceRGB();
  static const ColorSpace& deviceWhite();
  static const ColorSpace& deviceCMYK();
  // The same on every display.
  static const ColorSpace& calibratedRGB();    // sRGB too
  static const ColorSpace& calibratedWhite();  // greys with a gamma of 2.2
  static const ColorSpace& sRGB();
  static const ColorSpace& linearSRGB();
  static const ColorSpace& displayP3();
  static const ColorSpace& adobeRGB();

  // By the name that colorSpaceName() of a color answers; null when there is none of that name.
  [[nodiscard]] static const ColorSpace* named(const Text& name);

  [[nodiscard]] const Text& name() const { return name_; }  // "CalibratedRGB"
  [[nodiscard]] Model model() const { return model_; }      // its own
  [[nodiscard]] std::size_t numberOfComponents() const;     // alpha not counted

  // These components as the other space has them, by relative colorimetry: white stays white, and what the
  // other space cannot show is moved to its edge. Missing components count as 0.
  [[nodiscard]] std::vector<double> converted(const std::vector<double>& components,
                                              const ColorSpace& to) const;

  ColorSpace(const ColorSpace&) = delete;
  ColorSpace& operator=(const ColorSpace&) = delete;

 private:
  using Row = std::array<double, 3>;
  using Matrix = std::array<Row, 3>;
  struct Primaries;
  enum class Curve { SRGB, Gamma22, AdobeGamma, Linear };

  ColorSpace(const char* name, Model model, Curve curve);
  ColorSpace(const char* name, const Primaries& primaries, Curve curve);

  [[nodiscard]] static const Primaries& sRGBPrimaries();
  [[nodiscard]] double decoded(double value) const;
  [[nodiscard]] double encoded(double light) const;
  [[nodiscard]] std::vector<double> convertedAmongLights(const std::vector<double>& given,
                                                         const ColorSpace& to) const;

  const Text name_;
  const Model model_;
  const Curve curve_;
  Matrix toLight_{};    // RGB only: linear components to XYZ under D50
  Matrix fromLight_{};  // and back
};

}  // namespace halvorn
