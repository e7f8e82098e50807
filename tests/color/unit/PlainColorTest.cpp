#include "KTStuff/KTClasses/PlainColor.h"

#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <limits>
#include <string>
#include <vector>

#include "KTStuff/KTClasses/ColorCatalog.h"
#include "tests/fakes/FakeAppearances.h"
#include "tests/fakes/FakeLocalizedStrings.h"
#include "tests/support/TextPrinting.h"

namespace halvorn {
namespace {

void expectComponents(const ColorPointer& color, const std::vector<double>& expected,
                      const std::string& what = "") {
  ASSERT_NE(color, nullptr) << what;
  const auto found = color->getComponents();
  ASSERT_EQ(found.size(), expected.size()) << what;
  for (std::size_t i = 0; i < found.size(); ++i) EXPECT_NEAR(found[i], expected[i], 1e-9) << what << " " << i;
}

TEST(PlainColor, HasTheComponentsItWasMadeWith) {
  const auto color = PlainColor::calibratedRGB(0.1, 0.2, 0.3, 0.4);
  expectComponents(color, {0.1, 0.2, 0.3, 0.4});
  EXPECT_EQ(color->numberOfComponents(), 4);
  EXPECT_EQ(color->colorSpace(), &ColorSpace::calibratedRGB());
  EXPECT_EQ(color->colorSpaceName(), Text("CalibratedRGB"));
  EXPECT_EQ(PlainColor::calibratedWhite(0.1)->numberOfComponents(), 2);
  EXPECT_EQ(PlainColor::deviceCMYK(0.1, 0.2, 0.3, 0.4)->numberOfComponents(), 5);
}

TEST(PlainColor, ComponentsOutsideOfTheUnitAreMovedToItsEnd) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const double infinity = std::numeric_limits<double>::infinity();
  expectComponents(PlainColor::sRGB(-0.5, 1.5, nan, 2.0), {0.0, 1.0, 0.0, 1.0});
  expectComponents(PlainColor::sRGB(infinity, -infinity, 0.5, nan), {1.0, 0.0, 0.5, 0.0});
  expectComponents(std::make_shared<PlainColor>(ColorSpace::sRGB(), std::vector{0.5}, 1.0),
                   {0.5, 0.0, 0.0, 1.0}, "missing components");
  expectComponents(std::make_shared<PlainColor>(ColorSpace::deviceWhite(), std::vector{0.5, 0.6, 0.7}, 1.0),
                   {0.5, 1.0}, "left over components");
}

TEST(PlainColor, HueSaturationAndBrightnessAreThoseOfTheHexagon) {
  const struct {
    RedGreenBlueAlpha rgb;
    double hue, saturation, brightness;
    const char* why;
  } table[] = {{{1, 0, 0, 1}, 0.0, 1.0, 1.0, "red"},
               {{1, 1, 0, 1}, 1.0 / 6, 1.0, 1.0, "yellow"},
               {{0, 1, 0, 1}, 2.0 / 6, 1.0, 1.0, "green"},
               {{0, 1, 1, 1}, 3.0 / 6, 1.0, 1.0, "cyan"},
               {{0, 0, 1, 1}, 4.0 / 6, 1.0, 1.0, "blue"},
               {{1, 0, 1, 1}, 5.0 / 6, 1.0, 1.0, "magenta"},
               {{0.5, 0.5, 0.5, 1}, 0.0, 0.0, 0.5, "grey has no hue"},
               {{0, 0, 0, 1}, 0.0, 0.0, 0.0, "black has no saturation"},
               {{0.4, 0.2, 0.3, 1}, 11.0 / 12, 0.5, 0.4, "a hue below red's"},
               {{0.2, 0.4, 0.8, 1}, 11.0 / 18, 0.75, 0.8, "a hue before blue's"}};
  for (const auto& [rgb, hue, saturation, brightness, why] : table) {
    const auto color = PlainColor::deviceRGB(rgb.red, rgb.green, rgb.blue);
    EXPECT_NEAR(color->hueComponent(), hue, 1e-12) << why;
    EXPECT_NEAR(color->saturationComponent(), saturation, 1e-12) << why;
    EXPECT_NEAR(color->brightnessComponent(), brightness, 1e-12) << why;
    expectComponents(PlainColor::calibratedHSB(hue, saturation, brightness),
                     {rgb.red, rgb.green, rgb.blue, 1}, why);
  }
  expectComponents(PlainColor::calibratedHSB(1.0, 1.0, 1.0, 0.5), {1, 0, 0, 0.5}, "a whole turn");
}

TEST(PlainColor, InksCoverWhatBlackLeaves) {
  const auto color = PlainColor::deviceRGB(0.2, 0.4, 0.8, 0.5);
  EXPECT_NEAR(color->cyanComponent(), 0.75, 1e-12);
  EXPECT_NEAR(color->magentaComponent(), 0.5, 1e-12);
  EXPECT_NEAR(color->yellowComponent(), 0.0, 1e-12);
  EXPECT_NEAR(color->blackComponent(), 0.2, 1e-12);
  EXPECT_EQ(color->getCyan()->alpha, 0.5);
  EXPECT_EQ(PlainColor::deviceWhite(0.0)->getCyan(), (CyanMagentaYellowBlackAlpha{0, 0, 0, 1, 1}));
  expectComponents(PlainColor::deviceCMYK(0.75, 0.5, 0.0, 0.2)->colorUsingColorSpaceName("DeviceRGB"),
                   {0.2, 0.4, 0.8, 1.0});
}

TEST(PlainColor, EachInkTakesItsOwnLight) {
  expectComponents(PlainColor::deviceCMYK(0.1, 0.2, 0.7, 0.0)->colorUsingColorSpaceName("DeviceRGB"),
                   {0.9, 0.8, 0.3, 1.0});
  expectComponents(PlainColor::deviceCMYK(0.7, 0.1, 0.2, 0.5)->colorUsingColorSpaceName("DeviceRGB"),
                   {0.15, 0.45, 0.4, 1.0});
}

TEST(PlainColor, AskedForAnotherModelItAnswersAsIfConverted) {
  const auto grey = PlainColor::deviceWhite(0.25, 0.5);
  EXPECT_NEAR(grey->redComponent(), 0.25, 1e-12);
  EXPECT_NEAR(grey->brightnessComponent(), 0.25, 1e-12);
  EXPECT_NEAR(grey->blackComponent(), 0.75, 1e-12);
  EXPECT_EQ(grey->getRed()->alpha, 0.5);
  EXPECT_EQ(grey->getWhite(), (WhiteAlpha{0.25, 0.5})) << "its own component, not that of calibrated white";
  EXPECT_NEAR(PlainColor::deviceCMYK(0, 1, 1, 0)->redComponent(), 1.0, 1e-12);
  EXPECT_NEAR(PlainColor::calibratedRGB(0.5, 0.5, 0.5)->whiteComponent(),
              std::pow(std::pow((0.5 + 0.055) / 1.055, 2.4), 1 / 2.2), 1e-6);
}

TEST(PlainColor, WhiteAndBlackAreThemselvesInEverySpace) {
  for (const char* name : {"DeviceRGB", "CalibratedRGB", "SRGB", "LinearSRGB", "DisplayP3", "AdobeRGB",
                           "DeviceWhite", "CalibratedWhite", "DeviceCMYK"}) {
    for (const double end : {0.0, 1.0}) {
      for (const auto& color : {PlainColor::calibratedWhite(end), PlainColor::sRGB(end, end, end),
                                PlainColor::deviceCMYK(0, 0, 0, 1 - end)}) {
        const auto there = color->colorUsingColorSpaceName(name);
        ASSERT_NE(there, nullptr);
        EXPECT_EQ(there->colorSpaceName(), Text(name));
        EXPECT_NEAR(there->whiteComponent(), end, 2e-4) << name;
        EXPECT_NEAR(there->redComponent(), end, 2e-4) << name;
      }
    }
  }
}

TEST(PlainColor, DeviceCalibratedAndSRGBComponentsAreTheSame) {
  const auto color = PlainColor::calibratedRGB(0.1, 0.2, 0.3);
  for (const char* name : {"DeviceRGB", "SRGB", "CalibratedRGB"}) {
    EXPECT_EQ(color->colorUsingColorSpaceName(name)->getComponents(), color->getComponents());
  }
}

TEST(PlainColor, WhatASpaceCannotShowIsMovedToItsEdge) {
  const PlainColor green(ColorSpace::displayP3(), {0, 1, 0}, 1.0);
  const auto shown = green.colorUsingColorSpace(ColorSpace::sRGB())->getComponents();
  EXPECT_EQ(shown[0], 0.0);
  EXPECT_EQ(shown[1], 1.0);
  EXPECT_EQ(shown[2], 0.0);
}

TEST(PlainColor, InASpaceOfNoNameItIsNull) {
  EXPECT_EQ(PlainColor::sRGB(0, 0, 0)->colorUsingColorSpaceName("Octarine"), nullptr);
  EXPECT_EQ(PlainColor::sRGB(0, 0, 0)->colorUsingColorSpaceName(""), nullptr);
  EXPECT_EQ(PlainColor::sRGB(0, 0, 0)->colorUsingColorSpaceName("Named"), nullptr);
}

TEST(PlainColor, BlendsAreWeightedSumsInCalibratedRGB) {
  const auto red = PlainColor::calibratedRGB(1.0, 0.0, 0.2, 1.0);
  const auto blue = PlainColor::deviceRGB(0.0, 0.5, 1.0, 0.5);
  expectComponents(red->blendedColorWithFraction(0.25, blue), {0.75, 0.125, 0.4, 0.875});
  expectComponents(red->blendedColorWithFraction(0.0, blue), {1.0, 0.0, 0.2, 1.0});
  expectComponents(red->blendedColorWithFraction(1.0, blue), {0.0, 0.5, 1.0, 0.5});
  expectComponents(red->blendedColorWithFraction(7.0, blue), {0.0, 0.5, 1.0, 0.5}, "more than all");
  expectComponents(red->blendedColorWithFraction(-7.0, blue), {1.0, 0.0, 0.2, 1.0}, "less than nothing");
  EXPECT_EQ(red->blendedColorWithFraction(0.5, blue)->colorSpaceName(), Text("CalibratedRGB"));
  EXPECT_EQ(red->blendedColorWithFraction(0.5, nullptr), nullptr);
}

TEST(PlainColor, HighlightsGoToWhiteAndShadowsToBlackWithoutTouchingAlpha) {
  const auto color = PlainColor::calibratedRGB(0.4, 0.6, 0.8, 0.3);
  expectComponents(color->highlightWithLevel(0.5), {0.7, 0.8, 0.9, 0.3});
  expectComponents(color->highlightWithLevel(0.0), {0.4, 0.6, 0.8, 0.3});
  expectComponents(color->highlightWithLevel(1.0), {1.0, 1.0, 1.0, 0.3});
  expectComponents(color->shadowWithLevel(0.5), {0.2, 0.3, 0.4, 0.3});
  expectComponents(color->shadowWithLevel(1.0), {0.0, 0.0, 0.0, 0.3});
}

TEST(PlainColor, AnotherAlphaLeavesTheSpaceAndTheComponents) {
  const auto color = PlainColor::deviceCMYK(0.1, 0.2, 0.3, 0.4, 1.0)->colorWithAlphaComponent(0.25);
  expectComponents(color, {0.1, 0.2, 0.3, 0.4, 0.25});
  EXPECT_EQ(color->colorSpaceName(), Text("DeviceCMYK"));
  EXPECT_EQ(color->colorWithAlphaComponent(9.0)->alphaComponent(), 1.0);
}

TEST(PlainColor, SystemEffectsAreSeen) {
  const auto color = PlainColor::calibratedRGB(0.4, 0.6, 0.8, 0.8);
  expectComponents(color->colorWithSystemEffect(ColorSystemEffect::None), {0.4, 0.6, 0.8, 0.8});
  expectComponents(color->colorWithSystemEffect(ColorSystemEffect::Disabled), {0.4, 0.6, 0.8, 0.4});
  const double pressed = color->colorWithSystemEffect(ColorSystemEffect::Pressed)->redComponent();
  const double deep = color->colorWithSystemEffect(ColorSystemEffect::DeepPressed)->redComponent();
  const double rollover = color->colorWithSystemEffect(ColorSystemEffect::Rollover)->redComponent();
  EXPECT_NEAR(pressed, 0.4 * 0.85, 1e-9) << "15 % black";
  EXPECT_NEAR(deep, 0.4 * 0.70, 1e-9) << "30 % black";
  EXPECT_NEAR(rollover, 0.4 * 0.90 + 0.10, 1e-9) << "10 % white";
}

TEST(PlainColor, DrawingTakesItAsTheDisplayHasIt) {
  const auto color = PlainColor::deviceCMYK(0.0, 0.5, 1.0, 0.2, 0.5);
  FakeGraphicsContext context;
  color->setFill(context);
  EXPECT_EQ(context.fill, color->CGColor());
  EXPECT_EQ(context.stroke, std::nullopt);
  PlainColor::deviceRGB(0.1, 0.2, 0.3)->setStroke(context);
  EXPECT_EQ(context.stroke, (DeviceColor{0.1, 0.2, 0.3, 1.0}));
  EXPECT_EQ(context.fill, color->CGColor());
  PlainColor::deviceRGB(0.7, 0.8, 0.9)->set(context);
  EXPECT_EQ(context.stroke, (DeviceColor{0.7, 0.8, 0.9, 1.0}));
  EXPECT_EQ(context.fill, context.stroke);
}

TEST(PlainColor, APlainColorHasNoNames) {
  const auto color = PlainColor::sRGB(1, 0, 0);
  EXPECT_EQ(color->catalogNameComponent(), std::nullopt);
  EXPECT_EQ(color->colorNameComponent(), std::nullopt);
  EXPECT_EQ(color->localizedCatalogNameComponent(), std::nullopt);
  EXPECT_EQ(color->localizedColorNameComponent(), std::nullopt);
}

TEST(ColorCatalog, AColorKnowsItsNamesAndTheirTranslations) {
  FakeLocalizedStrings strings;
  strings.translations = {{"tomato", "Tomate"}, {"Web", "Netz"}};
  const ColorCatalog web = ColorCatalog::web(strings);
  const auto tomato = web.colorNamed("tomato");
  ASSERT_NE(tomato, nullptr);
  EXPECT_EQ(tomato->colorSpaceName(), Text("Named"));
  EXPECT_EQ(tomato->catalogNameComponent(), Text("Web"));
  EXPECT_EQ(tomato->colorNameComponent(), Text("tomato"));
  EXPECT_EQ(tomato->localizedCatalogNameComponent(), Text("Netz"));
  EXPECT_EQ(tomato->localizedColorNameComponent(), Text("Tomate"));
  expectComponents(tomato, {1.0, 99.0 / 255, 71.0 / 255, 1.0});
  EXPECT_EQ(web.colorNamed("potato"), nullptr);
  EXPECT_EQ(web.colorNamed(""), nullptr);
}

TEST(ColorCatalog, TheWebsNamesAreThoseOfTheStandard) {
  const ColorCatalog web = ColorCatalog::web(FakeLocalizedStrings());
  std::ifstream standard(KT_SOURCE_DIR "/tests/data/color/web-names");
  std::vector<Text> names;
  std::uint32_t bytes = 0;
  for (std::string name; standard >> name >> std::hex >> bytes; names.emplace_back(name)) {
    const auto color = web.colorNamed(Text(name));
    ASSERT_NE(color, nullptr) << name;
    SCOPED_TRACE(name);
    expectComponents(color,
                     {(bytes >> 16) / 255.0, (bytes >> 8 & 0xFF) / 255.0, (bytes & 0xFF) / 255.0, 1.0});
  }
  EXPECT_EQ(names.size(), 147U);
  EXPECT_EQ(web.colorNames(), names) << "in the order of the alphabet, and no others";
}

TEST(ColorCatalog, WhatIsMadeOfANamedColorHasNoName) {
  const ColorCatalog web = ColorCatalog::web(FakeLocalizedStrings());
  const auto gold = web.colorNamed("gold");
  for (const auto& made :
       {gold->highlightWithLevel(0.0), gold->colorWithAlphaComponent(0.5),
        gold->colorUsingColorSpaceName("SRGB"), gold->colorWithSystemEffect(ColorSystemEffect::None)}) {
    EXPECT_EQ(made->colorNameComponent(), std::nullopt);
    EXPECT_NE(made->colorSpaceName(), Text("Named"));
    EXPECT_NEAR(made->redComponent(), 1.0, 1e-12);
  }
  const auto named = gold->colorUsingColorSpaceName("Named");
  EXPECT_EQ(named->colorNameComponent(), Text("gold"));
  EXPECT_EQ(named->getComponents(), gold->getComponents());
}

}  // namespace
}  // namespace halvorn
