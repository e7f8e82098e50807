#include "KTStuff/KTClasses/KTDynamicColor.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "KTStuff/KTClasses/KTDynamicColorClass.h"
#include "KTStuff/KTClasses/KTUtilitiesTheme.h"
#include "KTStuff/KTClasses/PlainColor.h"
#include "tests/fakes/FakeAppearances.h"
#include "tests/fakes/FakeBundles.h"
#include "tests/fakes/FakeColor.h"
#include "tests/fakes/FakeDefaults.h"
#include "tests/fakes/FakeInterfaceStyleSetting.h"
#include "tests/fakes/FakeLocalizedDates.h"
#include "tests/fakes/FakeSystemFacts.h"
#include "tests/fakes/FakeUnicode.h"
#include "tests/fakes/RecordingLog.h"
#include "tests/support/TextPrinting.h"

namespace halvorn {
namespace {

using Lines = std::vector<std::string>;
constexpr double kFramework10_13 = 1561.6;
constexpr double kFramework10_14 = 1639.0;

class KTDynamicColorTest : public testing::Test {
 protected:
  void beDark() { interfaceStyle.style = "Dark"; }
  // The number of the variant that answers.
  int answering(const Color& asked) { return asked.numberOfComponents(); }

  RecordingLog log;
  FakeSystemFacts system;
  FakeBundles bundles;
  FakeUnicode unicode;
  FakeLocalizedDates dates;
  FakeDefaults defaults;
  FakeInterfaceStyleSetting interfaceStyle;
  KTUtilitiesVersions versions{bundles, system, unicode, dates, log};
  KTUtilitiesTheme theme{versions, defaults, interfaceStyle};
  FakeAppearances appearances;
  KTDynamicColorClass colors{{.appearances = appearances, .theme = theme, .system = system, .log = log}};

  const std::shared_ptr<FakeColor> light = std::make_shared<FakeColor>(10);
  const std::shared_ptr<FakeColor> dark = std::make_shared<FakeColor>(21);
  const std::shared_ptr<KTDynamicColor> color = colors.lightColor(light, dark);
};

using EffectiveColor = KTDynamicColorTest;

TEST_F(EffectiveColor, IsTheStoredObjectItself) {
  appearances.draw(AppearanceName::Aqua);
  EXPECT_EQ(color->effectiveColor(), light);
  appearances.draw(AppearanceName::DarkAqua);
  EXPECT_EQ(color->effectiveColor(), dark);
}

TEST_F(EffectiveColor, OnASystemOlderThan10_14EveryQueryAnswersWithTheLightVariant) {
  system.framework = kFramework10_13;
  beDark();
  appearances.draw(AppearanceName::DarkAqua);
  for (const auto flag : {UseGlobalAppearance::No, UseGlobalAppearance::Yes}) {
    EXPECT_EQ(answering(*color->useGlobalAppearance(flag)), 10);
  }
  EXPECT_EQ(log.lines(), Lines{});
  EXPECT_EQ(interfaceStyle.installations, 0) << "the desktop is not even asked";
  system.framework = kFramework10_14;
  EXPECT_EQ(answering(*color), 21) << "10.14 itself has appearances";
}

TEST_F(EffectiveColor, WithoutADarkColorItIsTheLightOneInBothModes) {
  const auto single = colors.lightColor(light, nullptr)->useGlobalAppearance(UseGlobalAppearance::Yes);
  beDark();
  for (const auto name : {AppearanceName::Aqua, AppearanceName::DarkAqua}) {
    appearances.draw(name);
    EXPECT_EQ(single->effectiveColor(), light);
  }
  EXPECT_EQ(log.lines(), Lines{});
}

TEST_F(EffectiveColor, WithTheGlobalFlagTheDesktopsStyleWinsOverAForcedLightViewAndIsLoggedOnEachQuery) {
  beDark();
  appearances.draw(AppearanceName::Aqua);
  color->useGlobalAppearance(UseGlobalAppearance::Yes);
  EXPECT_EQ(answering(*color), 21);
  EXPECT_EQ(color->redComponent(), 21.0);
  EXPECT_EQ(log.lines(), (Lines{"global dark color", "global dark color"}));
}

TEST_F(EffectiveColor, WithoutTheGlobalFlagAForcedLightViewIsLightInDarkMode) {
  beDark();
  appearances.effective = FakeAppearances::named(AppearanceName::DarkAqua);
  appearances.draw(AppearanceName::Aqua);
  EXPECT_EQ(color->effectiveColor(), light);
  EXPECT_EQ(log.lines(), Lines{});
}

TEST_F(EffectiveColor, ALightDesktopDoesNotByItselfSelectTheLightVariant) {
  appearances.draw(AppearanceName::DarkAqua);
  EXPECT_EQ(color->useGlobalAppearance(UseGlobalAppearance::Yes)->effectiveColor(), dark);
  EXPECT_EQ(log.lines(), Lines{}) << "it was not the flag that decided";
}

TEST_F(EffectiveColor, WhileNothingIsDrawnTheApplicationsAppearanceCounts) {
  EXPECT_EQ(color->effectiveColor(), light);
  appearances.effective = FakeAppearances::named(AppearanceName::DarkAqua);
  EXPECT_EQ(color->effectiveColor(), dark);
  appearances.effective = nullptr;
  EXPECT_EQ(color->effectiveColor(), light);
}

TEST_F(EffectiveColor, AnAppearanceThatMatchesNeitherNameYieldsTheLightVariant) {
  appearances.current = std::make_shared<FakeAppearance>(std::vector<AppearanceName>{});
  appearances.effective = FakeAppearances::named(AppearanceName::DarkAqua);
  EXPECT_EQ(color->effectiveColor(), light);
}

TEST_F(EffectiveColor, AsksForAquaBeforeDarkAqua) {
  const auto either =
      std::make_shared<FakeAppearance>(std::vector{AppearanceName::DarkAqua, AppearanceName::Aqua});
  appearances.current = either;
  EXPECT_EQ(color->effectiveColor(), light);
  EXPECT_EQ(either->asked, (std::vector{AppearanceName::Aqua, AppearanceName::DarkAqua}));
}

TEST_F(EffectiveColor, TheDefaultsStyleOfThePersonCountsForTheGlobalFlag) {
  defaults.values.insert_or_assign("AppleInterfaceStyle", "Dark");
  EXPECT_EQ(color->useGlobalAppearance(UseGlobalAppearance::Yes)->effectiveColor(), dark);
  defaults.values.insert_or_assign("AppleInterfaceStyle", "Light");
  EXPECT_EQ(color->effectiveColor(), light);
}

using DynamicColor = KTDynamicColorTest;

TEST_F(DynamicColor, TheGlobalFlagIsFalseAtFirstAndTakesEffectOnTheNextQuery) {
  beDark();
  EXPECT_EQ(color->effectiveColor(), light);
  color->useGlobalAppearance(UseGlobalAppearance::Yes);
  EXPECT_EQ(color->effectiveColor(), dark);
  color->useGlobalAppearance(UseGlobalAppearance::No);
  EXPECT_EQ(color->effectiveColor(), light);
}

TEST_F(DynamicColor, SettingTheFlagAnswersTheSameObject) {
  const auto made = colors.lightColor(light, dark);
  const auto chained = made->useGlobalAppearance(UseGlobalAppearance::Yes);
  EXPECT_EQ(chained, made);
  beDark();
  EXPECT_EQ(made->effectiveColor(), dark) << "with the flag now set";
}

TEST_F(DynamicColor, TwoCallsOfRedWarningTextColorAnswerTheIdenticalObject) {
  const auto red = colors.redWarningTextColor();
  EXPECT_EQ(colors.redWarningTextColor(), red);
  EXPECT_EQ(red->getRed(), (RedGreenBlueAlpha{0.75, 0.0, 0.0, 1.0}));
  EXPECT_EQ(red->colorSpaceName(), Text("CalibratedRGB"));
  appearances.draw(AppearanceName::DarkAqua);
  EXPECT_EQ(red->getRed(), (RedGreenBlueAlpha{1.0, 0.2, 0.0, 1.0}));
  EXPECT_EQ(red->colorSpaceName(), Text("CalibratedRGB"));
}

TEST_F(DynamicColor, ColorsDerivedFromItArePlainAndStayWhatTheyAre) {
  const auto red = colors.redWarningTextColor();
  appearances.draw(AppearanceName::DarkAqua);
  const std::vector<ColorPointer> derived = {
      red->highlightWithLevel(0.5),
      red->shadowWithLevel(0.5),
      red->colorWithAlphaComponent(0.5),
      red->blendedColorWithFraction(0.5, PlainColor::calibratedWhite(1.0)),
      red->colorWithSystemEffect(ColorSystemEffect::Pressed),
      red->colorUsingColorSpace(ColorSpace::sRGB()),
      red->colorUsingColorSpaceName("DeviceRGB")};
  for (const ColorPointer& plain : derived) {
    ASSERT_NE(plain, nullptr);
    EXPECT_EQ(std::dynamic_pointer_cast<const KTDynamicColor>(plain), nullptr);
    const auto before = plain->getRed();
    appearances.draw(AppearanceName::Aqua);
    EXPECT_EQ(plain->getRed(), before);
    appearances.draw(AppearanceName::DarkAqua);
  }
}

TEST_F(DynamicColor, ADynamicColorCanBeBlendedIntoAnother) {
  const auto white = PlainColor::calibratedRGB(1.0, 1.0, 1.0);
  appearances.draw(AppearanceName::DarkAqua);
  const auto mixed = white->blendedColorWithFraction(0.5, colors.redWarningTextColor());
  EXPECT_DOUBLE_EQ(mixed->greenComponent(), 0.6);
}

// --- every operation of the interface, in its order

struct Operation {
  const char* question;  // as the effective color hears it
  std::function<std::string(const Color&)> ask;
};

std::string told(double value) { return std::to_string(value); }
std::string told(const OptionalText& text) { return text ? text->bytes() : "none"; }
std::string told(const ColorPointer& color) {
  const auto fake = std::dynamic_pointer_cast<const FakeColor>(color);
  return fake ? "colour " + std::to_string(fake->number()) : "none";
}
template <typename Components>
std::string told(const std::optional<Components>& components) {
  std::string result;
  for (const double* at = reinterpret_cast<const double*>(components ? &*components : nullptr);
       components && at != reinterpret_cast<const double*>(&*components + 1); ++at) {
    result += told(*at) + " ";
  }
  return components ? result : "none";
}
std::string drawn(const std::function<void(GraphicsContext&)>& draw) {
  FakeGraphicsContext context;
  draw(context);
  return told(context.stroke) + "/ " + told(context.fill);
}

const std::vector<Operation>& operations() {
  static const ColorPointer other = PlainColor::deviceWhite(1.0);
  static const std::vector<Operation> all = {
      {"colorSpace",
       [](auto& c) { return c.colorSpace() != nullptr ? c.colorSpace()->name().bytes() : "none"; }},
      {"colorUsingColorSpace: AdobeRGB",
       [](auto& c) { return told(c.colorUsingColorSpace(ColorSpace::adobeRGB())); }},
      {"colorSpaceName", [](auto& c) { return told(c.colorSpaceName()); }},
      {"colorUsingColorSpaceName: any", [](auto& c) { return told(c.colorUsingColorSpaceName("any")); }},
      {"numberOfComponents", [](auto& c) { return std::to_string(c.numberOfComponents()); }},
      {"getComponents",
       [](auto& c) {
         std::string components;
         for (const double component : c.getComponents()) components += told(component) + " ";
         return components;
       }},
      {"redComponent", [](auto& c) { return told(c.redComponent()); }},
      {"greenComponent", [](auto& c) { return told(c.greenComponent()); }},
      {"blueComponent", [](auto& c) { return told(c.blueComponent()); }},
      {"getRed", [](auto& c) { return told(c.getRed()); }},
      {"hueComponent", [](auto& c) { return told(c.hueComponent()); }},
      {"saturationComponent", [](auto& c) { return told(c.saturationComponent()); }},
      {"brightnessComponent", [](auto& c) { return told(c.brightnessComponent()); }},
      {"getHue", [](auto& c) { return told(c.getHue()); }},
      {"whiteComponent", [](auto& c) { return told(c.whiteComponent()); }},
      {"getWhite", [](auto& c) { return told(c.getWhite()); }},
      {"cyanComponent", [](auto& c) { return told(c.cyanComponent()); }},
      {"magentaComponent", [](auto& c) { return told(c.magentaComponent()); }},
      {"yellowComponent", [](auto& c) { return told(c.yellowComponent()); }},
      {"blackComponent", [](auto& c) { return told(c.blackComponent()); }},
      {"getCyan", [](auto& c) { return told(c.getCyan()); }},
      {"alphaComponent", [](auto& c) { return told(c.alphaComponent()); }},
      {"CGColor", [](auto& c) { return told(c.CGColor()); }},
      {"catalogNameComponent", [](auto& c) { return told(c.catalogNameComponent()); }},
      {"colorNameComponent", [](auto& c) { return told(c.colorNameComponent()); }},
      {"localizedCatalogNameComponent", [](auto& c) { return told(c.localizedCatalogNameComponent()); }},
      {"localizedColorNameComponent", [](auto& c) { return told(c.localizedColorNameComponent()); }},
      {"setStroke", [](auto& c) { return drawn([&](auto& context) { c.setStroke(context); }); }},
      {"setFill", [](auto& c) { return drawn([&](auto& context) { c.setFill(context); }); }},
      {"set", [](auto& c) { return drawn([&](auto& context) { c.set(context); }); }},
      {"highlightWithLevel 0.25", [](auto& c) { return told(c.highlightWithLevel(0.25)); }},
      {"shadowWithLevel 0.75", [](auto& c) { return told(c.shadowWithLevel(0.75)); }},
      {"colorWithAlphaComponent 0.50", [](auto& c) { return told(c.colorWithAlphaComponent(0.5)); }},
      {"blendedColorWithFraction 0.30", [](auto& c) { return told(c.blendedColorWithFraction(0.3, other)); }},
      {"colorWithSystemEffect 3.00",
       [](auto& c) { return told(c.colorWithSystemEffect(ColorSystemEffect::Disabled)); }}};
  return all;
}

TEST_F(DynamicColor, EveryOperationIsAnsweredByTheVariantInForceAskedAnewEachTime) {
  ASSERT_EQ(operations().size(), 35u);
  for (const auto& [question, ask] : operations()) {
    for (int round = 0; round < 2; ++round) {
      for (const auto& variant : {light, dark}) {
        appearances.draw(variant == light ? AppearanceName::Aqua : AppearanceName::DarkAqua);
        light->asked.clear();
        dark->asked.clear();
        const std::string answer = ask(*color);
        const auto& other = variant == light ? dark : light;
        EXPECT_TRUE(other->asked.empty()) << question;
        for (const std::string& heard : variant->asked) EXPECT_EQ(heard, question);
        EXPECT_FALSE(variant->asked.empty()) << question << " was not forwarded";
        EXPECT_EQ(answer, ask(*variant)) << question;
      }
    }
  }
}

TEST_F(DynamicColor, WithoutALightColorEveryOperationAnswersNothing) {
  const auto none = colors.lightColor(nullptr, dark);
  for (const auto& [question, ask] : operations()) {
    const std::string answer = ask(*none);
    const std::set<std::string> nothing = {"none", "0", told(0.0), "", "none/ none"};
    EXPECT_TRUE(nothing.contains(answer)) << question << " answered " << answer;
  }
  appearances.draw(AppearanceName::DarkAqua);
  EXPECT_EQ(none->redComponent(), 21.0) << "the dark one is there";
}

// --- archives

using DynamicColorArchive = KTDynamicColorTest;

TEST_F(DynamicColorArchive, HasTheClassAndBothVariants) {
  const auto red = colors.redWarningTextColor();
  const PropertyDictionary archive = archivedObject(*red);
  EXPECT_EQ(describe(archive),
            Text("{\"$class\" = \"KTDynamicColor\"; "
                 "\"aquaColor\" = {\"$class\" = \"PlainColor\"; \"alpha\" = 1; "
                 "\"colorSpaceName\" = \"CalibratedRGB\"; \"components\" = (0.75, 0, 0); }; "
                 "\"darkAquaColor\" = {\"$class\" = \"PlainColor\"; \"alpha\" = 1; "
                 "\"colorSpaceName\" = \"CalibratedRGB\"; \"components\" = (1, 0.2, 0); }; }"));
  EXPECT_TRUE(KTDynamicColorClass::supportsSecureCoding());
}

TEST_F(DynamicColorArchive, ComesBackWithBothVariantsAndWithoutTheFlag) {
  const auto red = colors.lightColor(PlainColor::deviceCMYK(0.1, 0.2, 0.3, 0.4, 0.5),
                                     PlainColor::calibratedWhite(0.25, 0.75));
  red->useGlobalAppearance(UseGlobalAppearance::Yes);
  const PropertyDictionary archive = archivedObject(*red);
  const auto classes = colors.decodableClasses();
  const auto back = KeyedDecoder(archive, classes).decodeRoot<KTDynamicColor>();
  ASSERT_NE(back, nullptr);
  appearances.draw(AppearanceName::Aqua);
  EXPECT_EQ(back->getComponents(), (std::vector{0.1, 0.2, 0.3, 0.4, 0.5}));
  EXPECT_EQ(back->colorSpaceName(), Text("DeviceCMYK"));
  beDark();
  EXPECT_EQ(back->colorSpaceName(), Text("DeviceCMYK")) << "the flag is not archived";
  EXPECT_EQ(log.lines(), Lines{});
  appearances.draw(AppearanceName::DarkAqua);
  EXPECT_EQ(back->getComponents(), (std::vector{0.25, 0.75}));
}

TEST_F(DynamicColorArchive, WithoutADarkVariantOnlyTheLightOneIsWrittenAndDecodesToLightInBothAppearances) {
  const PropertyDictionary archive =
      archivedObject(*colors.lightColor(PlainColor::deviceWhite(0.5), nullptr));
  EXPECT_TRUE(archive.contains("aquaColor"));
  EXPECT_FALSE(archive.contains("darkAquaColor"));
  const auto classes = colors.decodableClasses();
  const auto back = KeyedDecoder(archive, classes).decodeRoot<Color>();
  beDark();
  for (const auto name : {AppearanceName::Aqua, AppearanceName::DarkAqua}) {
    appearances.draw(name);
    EXPECT_EQ(back->whiteComponent(), 0.5);
  }
}

TEST_F(DynamicColorArchive, AMissingLightVariantIsWrittenAllTheSame) {
  const PropertyDictionary archive =
      archivedObject(*colors.lightColor(nullptr, PlainColor::deviceWhite(0.5)));
  EXPECT_EQ(textForKey(archive, "aquaColor"), Text("$null"));
  const auto classes = colors.decodableClasses();
  const auto back = KeyedDecoder(archive, classes).decodeRoot<Color>();
  EXPECT_EQ(back->colorSpace(), nullptr);
  appearances.draw(AppearanceName::DarkAqua);
  EXPECT_EQ(back->whiteComponent(), 0.5);
}

TEST_F(DynamicColorArchive, AVariantThatIsNoColorDecodesToNull) {
  struct NoColor : Archivable {
    Text archivedClass() const override { return "NoColor"; }
    void encodeWithCoder(KeyedEncoder&) const override {}
  };
  PropertyDictionary archive = archivedObject(*colors.redWarningTextColor());
  archive.insert_or_assign("darkAquaColor", PropertyValue(archivedObject(NoColor())));
  auto classes = colors.decodableClasses();
  classes["NoColor"] = [](const KeyedDecoder&) { return std::make_shared<NoColor>(); };
  const auto back = KeyedDecoder(archive, classes).decodeRoot<Color>();
  appearances.draw(AppearanceName::DarkAqua);
  EXPECT_EQ(back->redComponent(), 0.75);
}

TEST_F(DynamicColorArchive, DamagedArchivesYieldNullVariants) {
  const PropertyDictionary plain = archivedObject(*PlainColor::deviceWhite(0.5));
  const auto without = [&plain](const char* key) {
    PropertyDictionary rest = plain;
    rest.erase(key);
    return PropertyValue(rest);
  };
  const auto with = [&plain](const char* key, PropertyValue value) {
    PropertyDictionary changed = plain;
    changed.insert_or_assign(key, value);
    return PropertyValue(changed);
  };
  const std::vector<PropertyValue> damaged = {"text",
                                              7,
                                              PropertyArray{},
                                              PropertyDictionary{},
                                              without("$class"),
                                              without("alpha"),
                                              without("components"),
                                              without("colorSpaceName"),
                                              with("$class", "Other"),
                                              with("$class", 1),
                                              with("colorSpaceName", "Octarine"),
                                              with("components", PropertyArray{}),
                                              with("components", PropertyArray{"0.5"}),
                                              with("components", PropertyArray{0.1, 0.2}),
                                              with("alpha", "1")};
  const auto classes = colors.decodableClasses();
  for (const PropertyValue& value : damaged) {
    const PropertyDictionary archive = {{"$class", "KTDynamicColor"}, {"aquaColor", value}};
    const auto back = KeyedDecoder(archive, classes).decodeRoot<KTDynamicColor>();
    ASSERT_NE(back, nullptr);
    EXPECT_EQ(back->effectiveColor(), nullptr) << value.description().bytes();
  }
}

TEST_F(DynamicColorArchive, NestedTooDeeplyItEndsInNull) {
  PropertyDictionary archive = archivedObject(*PlainColor::deviceWhite(0.5));
  for (int depth = 0; depth < 200; ++depth) {
    archive = PropertyDictionary{{"$class", "KTDynamicColor"}, {"aquaColor", archive}};
  }
  const auto classes = colors.decodableClasses();
  const auto back = KeyedDecoder(archive, classes).decodeRoot<Color>();
  ASSERT_NE(back, nullptr);
  EXPECT_EQ(back->colorSpace(), nullptr);
}

}  // namespace
}  // namespace halvorn
