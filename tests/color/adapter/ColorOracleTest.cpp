// Color arithmetic against others': Python's colorsys and fractions, the toolkit's colors, and a library of
// color management. 10,000 random colors each.
#include <gtest/gtest.h>
#include <lcms2.h>

#include <QColor>
#include <algorithm>
#include <array>
#include <cmath>
#include <fstream>
#include <memory>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "KTStuff/KTClasses/ColorCatalog.h"
#include "KTStuff/KTClasses/PlainColor.h"
#include "tests/fakes/FakeLocalizedStrings.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/TextPrinting.h"

namespace halvorn {
namespace {

constexpr int kColors = 10'000;

// Random components; one in eight is an end of the range, one in eight that of its neighbour.
class RandomColors {
 public:
  double component() {
    const double drawn = unit_(engine_);
    const int kind = static_cast<int>(engine_() % 8);
    if (kind == 0) return drawn < 0.5 ? 0.0 : 1.0;
    if (kind != 1) last_ = drawn;
    return last_;
  }
  std::vector<double> components(int count) {
    std::vector<double> result;
    for (int i = 0; i < count; ++i) result.push_back(component());
    return result;
  }

 private:
  std::mt19937 engine_{20260721};
  std::uniform_real_distribution<double> unit_{0.0, 1.0};
  double last_ = 0.5;
};

// The largest difference that was seen, and where.
class Difference {
 public:
  void add(double ours, double theirs, const std::string& where) {
    const double difference = std::abs(ours - theirs);
    if (difference <= largest_ && !std::isnan(difference)) return;
    largest_ = std::isnan(difference) ? 1e9 : difference;
    where_ = where + ": " + std::to_string(ours) + ", not " + std::to_string(theirs);
  }
  void expectAtMost(double limit) const { EXPECT_LE(largest_, limit) << where_; }

 private:
  double largest_ = 0.0;
  std::string where_;
};

TEST(ColorOracle, HueBrightnessBlendsHighlightsAndShadowsAgreeWithPython) {
  if (!programExists("python3")) GTEST_SKIP() << "python3 is not installed";
  RandomColors random;
  std::vector<std::vector<double>> colors;
  std::ostringstream questions;
  questions.precision(17);
  for (int i = 0; i < kColors; ++i) {
    colors.push_back(random.components(9));
    for (const double component : colors.back()) questions << component << ' ';
    questions << '\n';
  }
  const TemporaryFolder folder;
  std::ofstream(folder / "colors") << questions.str();
  const auto run =
      runCommand({"python3", KT_SOURCE_DIR "/tests/color/adapter/color_oracle.py", folder / "colors"});
  std::istringstream answers(run.output);
  Difference difference;
  for (const auto& c : colors) {
    const auto color = PlainColor::calibratedRGB(c[0], c[1], c[2], c[3]);
    const auto other = PlainColor::calibratedRGB(c[4], c[5], c[6], c[7]);
    const auto hsb = *color->getHue();
    std::vector<double> ours = {hsb.hue, hsb.saturation, hsb.brightness};
    const auto append = [&ours](const std::vector<double>& more, std::size_t count) {
      ours.insert(ours.end(), more.begin(), more.begin() + static_cast<std::ptrdiff_t>(count));
    };
    append(PlainColor::calibratedHSB(hsb.hue, hsb.saturation, hsb.brightness)->getComponents(), 3);
    append(color->blendedColorWithFraction(c[8], other)->getComponents(), 4);
    append(color->highlightWithLevel(c[8])->getComponents(), 4);
    append(color->shadowWithLevel(c[8])->getComponents(), 4);
    for (std::size_t i = 0; i < ours.size(); ++i) {
      double theirs = 0.0;
      ASSERT_TRUE(answers >> theirs) << run.output.substr(0, 1000);
      difference.add(ours[i], theirs, "answer " + std::to_string(i));
    }
  }
  difference.expectAtMost(1e-14);
}

// The toolkit keeps 16 bits of each component.
TEST(ColorOracle, HueAndInksAgreeWithTheToolkit) {
  RandomColors random;
  Difference difference;
  for (int i = 0; i < kColors; ++i) {
    const auto c = random.components(4);
    const QColor theirs = QColor::fromRgbF(static_cast<float>(c[0]), static_cast<float>(c[1]),
                                           static_cast<float>(c[2]), static_cast<float>(c[3]));
    // From the components as the toolkit has them: dark colors have hues that depend on the last bits.
    const auto ours = PlainColor::deviceRGB(theirs.redF(), theirs.greenF(), theirs.blueF(), theirs.alphaF());
    const auto hsb = *ours->getHue();
    difference.add(hsb.brightness, theirs.valueF(), "brightness");
    difference.add(ours->alphaComponent(), theirs.alphaF(), "alpha");
    if (hsb.brightness > 0.01) {
      difference.add(hsb.saturation, theirs.hsvSaturationF(), "saturation");
      difference.add(ours->cyanComponent(), theirs.cyanF(), "cyan");
      difference.add(ours->magentaComponent(), theirs.magentaF(), "magenta");
      difference.add(ours->yellowComponent(), theirs.yellowF(), "yellow");
      difference.add(ours->blackComponent(), theirs.blackF(), "black");
    }
    if (hsb.saturation > 0.01) {
      const double turn = std::abs(hsb.hue - theirs.hsvHueF());
      difference.add(std::min(turn, 1.0 - turn), 0.0, "hue");
    }
    const QColor inks = QColor::fromCmykF(static_cast<float>(c[0]), static_cast<float>(c[1]),
                                          static_cast<float>(c[2]), static_cast<float>(c[3]));
    const auto printed = *PlainColor::deviceCMYK(inks.cyanF(), inks.magentaF(), inks.yellowF(), inks.blackF())
                              ->colorUsingColorSpaceName("DeviceRGB")
                              ->getRed();
    difference.add(printed.red, inks.redF(), "red of inks");
    difference.add(printed.green, inks.greenF(), "green of inks");
    difference.add(printed.blue, inks.blueF(), "blue of inks");
  }
  difference.expectAtMost(5e-5);
}

TEST(ColorOracle, TheNamesOfTheCatalogAreTheToolkitsAndMeanTheSameColors) {
  const ColorCatalog web = ColorCatalog::web(FakeLocalizedStrings());
  std::vector<std::string> theirs;
  for (const QString& name : QColor::colorNames()) {
    if (QColor(name).alpha() == 255) theirs.push_back(name.toStdString());  // "transparent" is no color here
  }
  std::sort(theirs.begin(), theirs.end());
  std::vector<std::string> ours;
  for (const Text& name : web.colorNames()) ours.push_back(name.bytes());
  EXPECT_EQ(ours, theirs);
  ASSERT_GE(theirs.size(), 140u);
  for (const std::string& name : theirs) {
    const auto color = web.colorNamed(Text(name));
    if (!color) continue;
    const auto rgb = *color->getRed();
    EXPECT_EQ(QColor::fromRgbF(static_cast<float>(rgb.red), static_cast<float>(rgb.green),
                               static_cast<float>(rgb.blue)),
              QColor(QString::fromStdString(name)))
        << name;
  }
}

// --- spaces, by the profiles of a color management library

struct CloseProfile {
  void operator()(void* profile) const { cmsCloseProfile(profile); }
};
using Profile = std::unique_ptr<void, CloseProfile>;
struct FreeCurve {
  void operator()(cmsToneCurve* curve) const { cmsFreeToneCurve(curve); }
};
using Curve = std::unique_ptr<cmsToneCurve, FreeCurve>;

Curve sRGBCurve() {
  const cmsFloat64Number parameters[] = {2.4, 1.0 / 1.055, 0.055 / 1.055, 1.0 / 12.92, 0.04045};
  return Curve(cmsBuildParametricToneCurve(nullptr, 4, parameters));
}
Curve gammaCurve(double gamma) { return Curve(cmsBuildGamma(nullptr, gamma)); }

Profile rgbProfile(const cmsCIExyYTRIPLE& primaries, const Curve& curve) {
  const cmsCIExyY white = {0.3127, 0.3290, 1.0};
  cmsToneCurve* curves[] = {curve.get(), curve.get(), curve.get()};
  return Profile(cmsCreateRGBProfile(&white, &primaries, curves));
}
Profile greyProfile(const Curve& curve) { return Profile(cmsCreateGrayProfile(cmsD50_xyY(), curve.get())); }

struct Space {
  const ColorSpace& ours;
  Profile theirs;
  cmsUInt32Number format;
};

std::vector<Space> spaces() {
  const cmsCIExyYTRIPLE sRGB = {{0.64, 0.33, 1}, {0.30, 0.60, 1}, {0.15, 0.06, 1}};
  const cmsCIExyYTRIPLE p3 = {{0.680, 0.320, 1}, {0.265, 0.690, 1}, {0.150, 0.060, 1}};
  const cmsCIExyYTRIPLE adobe = {{0.64, 0.33, 1}, {0.21, 0.71, 1}, {0.15, 0.06, 1}};
  std::vector<Space> all;
  all.push_back({ColorSpace::calibratedRGB(), rgbProfile(sRGB, sRGBCurve()), TYPE_RGB_DBL});
  all.push_back({ColorSpace::linearSRGB(), rgbProfile(sRGB, gammaCurve(1.0)), TYPE_RGB_DBL});
  all.push_back({ColorSpace::displayP3(), rgbProfile(p3, sRGBCurve()), TYPE_RGB_DBL});
  all.push_back({ColorSpace::adobeRGB(), rgbProfile(adobe, gammaCurve(563.0 / 256.0)), TYPE_RGB_DBL});
  all.push_back({ColorSpace::calibratedWhite(), greyProfile(gammaCurve(2.2)), TYPE_GRAY_DBL});
  all.push_back({ColorSpace::deviceWhite(), greyProfile(sRGBCurve()), TYPE_GRAY_DBL});
  return all;
}

TEST(ColorOracle, ColorSpacesAgreeWithAColorManagementLibrary) {
  const auto all = spaces();
  for (const Space& from : all) {
    for (const Space& to : all) {
      const cmsHTRANSFORM transform =
          cmsCreateTransform(from.theirs.get(), from.format, to.theirs.get(), to.format,
                             INTENT_RELATIVE_COLORIMETRIC, cmsFLAGS_NOOPTIMIZE | cmsFLAGS_NOCACHE);
      ASSERT_NE(transform, nullptr);
      RandomColors random;
      Difference difference;
      const std::string way = from.ours.name().bytes() + " to " + to.ours.name().bytes();
      for (int i = 0; i < kColors; ++i) {
        const auto given = random.components(static_cast<int>(from.ours.numberOfComponents()));
        std::array<double, 4> theirs{};
        cmsDoTransform(transform, given.data(), theirs.data(), 1);
        const auto ours = from.ours.converted(given, to.ours);
        for (std::size_t k = 0; k < to.ours.numberOfComponents(); ++k) {
          difference.add(ours[k], clampedToUnit(theirs[k]), way + ", component " + std::to_string(k));
        }
      }
      difference.expectAtMost(1e-5);
      cmsDeleteTransform(transform);
    }
  }
}

TEST(ColorOracle, ToAnotherSpaceAndBackAColorIsTheSameWhereBothCanShowIt) {
  RandomColors random;
  Difference difference;
  for (int i = 0; i < kColors; ++i) {
    const auto given = random.components(3);
    for (const char* name : {"DisplayP3", "LinearSRGB", "DeviceRGB", "DeviceCMYK"}) {
      const ColorSpace& wide = *ColorSpace::named(name);
      const auto back = wide.converted(ColorSpace::sRGB().converted(given, wide), ColorSpace::sRGB());
      for (std::size_t k = 0; k < given.size(); ++k) {
        difference.add(back[k], given[k], std::string("by way of ") + name);
      }
    }
  }
  difference.expectAtMost(1e-12);
}

}  // namespace
}  // namespace halvorn
