#include "Core/ColorSpace.h"

#include <cmath>

#include "Core/ColorModels.h"

namespace halvorn {

struct ColorSpace::Primaries {
  double redX, redY, greenX, greenY, blueX, blueY;
};

namespace {

using Row = std::array<double, 3>;
using Matrix = std::array<Row, 3>;

// The light of all conversions is XYZ under D50, the white that color profiles are exchanged in.
constexpr Row kD50 = {0.9642, 1.0, 0.8249};
constexpr double kD65X = 0.3127;
constexpr double kD65Y = 0.3290;
constexpr Matrix kBradford = {
    {{0.8951, 0.2664, -0.1614}, {-0.7502, 1.7135, 0.0367}, {0.0389, -0.0685, 1.0296}}};

Row product(const Matrix& matrix, const Row& vector) {
  Row result{};
  for (std::size_t i = 0; i < 3; ++i) {
    for (std::size_t k = 0; k < 3; ++k) result[i] += matrix[i][k] * vector[k];
  }
  return result;
}

Matrix product(const Matrix& left, const Matrix& right) {
  Matrix result{};
  for (std::size_t i = 0; i < 3; ++i) {
    for (std::size_t k = 0; k < 3; ++k) {
      for (std::size_t n = 0; n < 3; ++n) result[i][k] += left[i][n] * right[n][k];
    }
  }
  return result;
}

Matrix inverse(const Matrix& m) {
  const auto minorOf = [&m](std::size_t row, std::size_t column) {
    const std::size_t r1 = (row + 1) % 3, r2 = (row + 2) % 3, c1 = (column + 1) % 3, c2 = (column + 2) % 3;
    return m[r1][c1] * m[r2][c2] - m[r1][c2] * m[r2][c1];
  };
  const double determinant = m[0][0] * minorOf(0, 0) + m[0][1] * minorOf(0, 1) + m[0][2] * minorOf(0, 2);
  Matrix result{};
  for (std::size_t i = 0; i < 3; ++i) {
    for (std::size_t k = 0; k < 3; ++k) result[k][i] = minorOf(i, k) / determinant;
  }
  return result;
}

Row lightAt(double x, double y) { return {x / y, 1.0, (1.0 - x - y) / y}; }

// What the eye takes for the same under D50 as this is under D65.
Matrix adaptationToD50() {
  const Row from = product(kBradford, lightAt(kD65X, kD65Y));
  const Row to = product(kBradford, kD50);
  Matrix scale{};
  for (std::size_t i = 0; i < 3; ++i) scale[i][i] = to[i] / from[i];
  return product(inverse(kBradford), product(scale, kBradford));
}

}  // namespace

const ColorSpace::Primaries& ColorSpace::sRGBPrimaries() {
  static constexpr Primaries primaries = {0.64, 0.33, 0.30, 0.60, 0.15, 0.06};
  return primaries;
}

const ColorSpace& ColorSpace::deviceRGB() {
  static const ColorSpace space("DeviceRGB", sRGBPrimaries(), Curve::SRGB);
  return space;
}

const ColorSpace& ColorSpace::deviceWhite() {
  static const ColorSpace space("DeviceWhite", Model::Gray, Curve::SRGB);
  return space;
}

const ColorSpace& ColorSpace::deviceCMYK() {
  static const ColorSpace space("DeviceCMYK", Model::CMYK, Curve::SRGB);
  return space;
}

const ColorSpace& ColorSpace::calibratedRGB() {
  static const ColorSpace space("CalibratedRGB", sRGBPrimaries(), Curve::SRGB);
  return space;
}

const ColorSpace& ColorSpace::calibratedWhite() {
  static const ColorSpace space("CalibratedWhite", Model::Gray, Curve::Gamma22);
  return space;
}

const ColorSpace& ColorSpace::sRGB() {
  static const ColorSpace space("SRGB", sRGBPrimaries(), Curve::SRGB);
  return space;
}

const ColorSpace& ColorSpace::linearSRGB() {
  static const ColorSpace space("LinearSRGB", sRGBPrimaries(), Curve::Linear);
  return space;
}

const ColorSpace& ColorSpace::displayP3() {
  static const ColorSpace space("DisplayP3", {0.680, 0.320, 0.265, 0.690, 0.150, 0.060}, Curve::SRGB);
  return space;
}

const ColorSpace& ColorSpace::adobeRGB() {
  static const ColorSpace space("AdobeRGB", {0.64, 0.33, 0.21, 0.71, 0.15, 0.06}, Curve::AdobeGamma);
  return space;
}

const ColorSpace* ColorSpace::named(const Text& name) {
  for (const ColorSpace* space : {&deviceRGB(), &deviceWhite(), &deviceCMYK(), &calibratedRGB(),
                                  &calibratedWhite(), &sRGB(), &linearSRGB(), &displayP3(), &adobeRGB()}) {
    if (space->name_ == name) return space;
  }
  return nullptr;
}

ColorSpace::ColorSpace(const char* name, Model model, Curve curve)
    : name_(name), model_(model), curve_(curve) {}

ColorSpace::ColorSpace(const char* name, const Primaries& primaries, Curve curve)
    : name_(name), model_(Model::RGB), curve_(curve) {
  const Row red = lightAt(primaries.redX, primaries.redY);
  const Row green = lightAt(primaries.greenX, primaries.greenY);
  const Row blue = lightAt(primaries.blueX, primaries.blueY);
  Matrix columns{};
  for (std::size_t i = 0; i < 3; ++i) columns[i] = {red[i], green[i], blue[i]};
  // As much of each that all together are white.
  const Row amounts = product(inverse(columns), lightAt(kD65X, kD65Y));
  for (Row& row : columns) {
    for (std::size_t k = 0; k < 3; ++k) row[k] *= amounts[k];
  }
  toLight_ = product(adaptationToD50(), columns);
  fromLight_ = inverse(toLight_);
}

std::size_t ColorSpace::numberOfComponents() const {
  switch (model_) {
    case Model::Gray:
      return 1;
    case Model::RGB:
      return 3;
    case Model::CMYK:
      break;
  }
  return 4;
}

double ColorSpace::decoded(double value) const {
  const double given = clampedToUnit(value);
  switch (curve_) {
    case Curve::Gamma22:
      return std::pow(given, 2.2);
    case Curve::AdobeGamma:
      return std::pow(given, 563.0 / 256.0);
    case Curve::Linear:
      return given;
    case Curve::SRGB:
      break;
  }
  return given <= 0.04045 ? given / 12.92 : std::pow((given + 0.055) / 1.055, 2.4);
}

double ColorSpace::encoded(double light) const {
  const double given = clampedToUnit(light);
  if (given >= 1.0) return 1.0;  // the curve's own end is a little beside it
  switch (curve_) {
    case Curve::Gamma22:
      return std::pow(given, 1.0 / 2.2);
    case Curve::AdobeGamma:
      return std::pow(given, 256.0 / 563.0);
    case Curve::Linear:
      return given;
    case Curve::SRGB:
      break;
  }
  return given <= 0.0031308 ? given * 12.92 : 1.055 * std::pow(given, 1.0 / 2.4) - 0.055;
}

std::vector<double> ColorSpace::convertedAmongLights(const std::vector<double>& given,
                                                     const ColorSpace& to) const {
  if (model_ == Model::Gray) {
    // A grey has no tint in any space.
    const double component = to.encoded(decoded(given[0]));
    return std::vector<double>(to.numberOfComponents(), component);
  }
  const Row light = product(toLight_, Row{decoded(given[0]), decoded(given[1]), decoded(given[2])});
  if (to.model_ == Model::Gray) return {to.encoded(light[1])};
  const Row linear = product(to.fromLight_, light);
  return {to.encoded(linear[0]), to.encoded(linear[1]), to.encoded(linear[2])};
}

std::vector<double> ColorSpace::converted(const std::vector<double>& components, const ColorSpace& to) const {
  std::vector<double> given = components;
  given.resize(numberOfComponents());
  for (double& component : given) component = clampedToUnit(component);
  // The device's and the calibrated colors share their light, so nothing is lost on the way between them.
  if (model_ == to.model_ && curve_ == to.curve_ && toLight_ == to.toLight_) return given;
  if (model_ == Model::CMYK) {
    const auto rgb = redGreenBlue({given[0], given[1], given[2], given[3], 1.0});
    return deviceRGB().converted({rgb.red, rgb.green, rgb.blue}, to);
  }
  if (to.model_ == Model::CMYK) {
    const auto rgb = converted(given, deviceRGB());
    const auto inks = cyanMagentaYellowBlack({rgb[0], rgb[1], rgb[2], 1.0});
    return {inks.cyan, inks.magenta, inks.yellow, inks.black};
  }
  return convertedAmongLights(given, to);
}

}  // namespace halvorn
