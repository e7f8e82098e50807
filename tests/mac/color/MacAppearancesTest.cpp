// Appearances and colors of the system: what is held, and what is asked.
#include "Platform/color/mac/MacAppearances.h"

#include "Platform/color/mac/MacGraphicsContext.h"
#include "tests/mac/MacTest.h"

namespace halvorn {
namespace {

class MacAppearancesTest : public MacTest {
 protected:
  MacAppearances appearances;
};

TEST_F(MacAppearancesTest, AnAppearanceIsHeldAsLongAsItsObject) {
  fakemac::state().currentAppearance = "DarkAqua";
  AppearancePointer held = appearances.currentAppearance();
  EXPECT_EQ(fakemac::state().liveAppearances, 1);
  fakemac::state().currentAppearance = "";
  EXPECT_EQ(held->bestMatchFromAppearancesWithNames({AppearanceName::Aqua, AppearanceName::DarkAqua}),
            AppearanceName::DarkAqua);
  held.reset();
  EXPECT_EQ(fakemac::state().liveAppearances, 0);
}

TEST_F(MacAppearancesTest, AnApplicationWithoutAnAppearanceHasNone) {
  fakemac::state().applicationAppearance = "";
  EXPECT_EQ(appearances.effectiveAppearance(), nullptr);
}

TEST_F(MacAppearancesTest, InheritedIsTheNameOfNone) {
  const auto light = appearances.effectiveAppearance();
  EXPECT_EQ(light->bestMatchFromAppearancesWithNames({AppearanceName::Inherited}), std::nullopt);
  EXPECT_EQ(light->bestMatchFromAppearancesWithNames({AppearanceName::Inherited, AppearanceName::Aqua}),
            AppearanceName::Aqua);
}

TEST_F(MacAppearancesTest, AnAppearanceOfAnotherKindFitsNeither) {
  fakemac::state().applicationAppearance = "VibrantLight";
  EXPECT_EQ(appearances.effectiveAppearance()->bestMatchFromAppearancesWithNames(
                {AppearanceName::Aqua, AppearanceName::DarkAqua}),
            std::nullopt);
}

TEST_F(MacAppearancesTest, AnExceptionOfTheSystemIsNoMatch) {
  const auto light = appearances.effectiveAppearance();
  fakemac::state().raisesExceptions = true;
  EXPECT_EQ(light->bestMatchFromAppearancesWithNames({AppearanceName::Aqua}), std::nullopt);
}

TEST_F(MacAppearancesTest, EachComponentOfAColorArrivesInItsPlace) {
  MacGraphicsContext().setFillColor({0.1, 0.2, 0.3, 0.4});
  const fakemac::Color& filled = fakemac::state().fillColor;
  EXPECT_DOUBLE_EQ(filled.red, 0.1);
  EXPECT_DOUBLE_EQ(filled.green, 0.2);
  EXPECT_DOUBLE_EQ(filled.blue, 0.3);
  EXPECT_DOUBLE_EQ(filled.alpha, 0.4);
}

}  // namespace
}  // namespace halvorn
