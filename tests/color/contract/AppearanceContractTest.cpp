// The same cases for whatever has appearances and is drawn into.
#include <gtest/gtest.h>

#include "AppearanceWorlds.h"

namespace halvorn {
namespace {

template <typename World>
class AppearanceContract : public testing::Test {
 protected:
  using Name = std::optional<AppearanceName>;
  static Name bestMatch(const AppearancePointer& appearance,
                        const std::vector<AppearanceName>& names = {AppearanceName::Aqua,
                                                                    AppearanceName::DarkAqua}) {
    return appearance ? appearance->bestMatchFromAppearancesWithNames(names) : std::nullopt;
  }
  // In the middle of drawing a view that is held to the appearance.
  Name whileDrawing(AppearanceName held) {
    Name found;
    world.draw(held, [&] { found = bestMatch(world.appearances().currentAppearance()); });
    return found;
  }
  World world;
};
TYPED_TEST_SUITE(AppearanceContract, AppearanceWorlds);

constexpr AppearanceName kAqua = AppearanceName::Aqua;
constexpr AppearanceName kDarkAqua = AppearanceName::DarkAqua;

TYPED_TEST(AppearanceContract, WhileNothingIsDrawnThereIsNoCurrentAppearance) {
  EXPECT_EQ(this->world.appearances().currentAppearance(), nullptr);
  EXPECT_EQ(this->whileDrawing(kAqua), kAqua);
  EXPECT_EQ(this->world.appearances().currentAppearance(), nullptr) << "nor is there one afterwards";
}

TYPED_TEST(AppearanceContract, TheApplicationHasThatOfTheDesktop) {
  EXPECT_EQ(this->bestMatch(this->world.appearances().effectiveAppearance()), kAqua);
  this->world.setDesktop(kDarkAqua);
  EXPECT_EQ(this->bestMatch(this->world.appearances().effectiveAppearance()), kDarkAqua);
}

TYPED_TEST(AppearanceContract, AnAppearanceFitsItsOwnNameAndNoOther) {
  const auto light = this->world.appearances().effectiveAppearance();
  EXPECT_EQ(this->bestMatch(light, {kDarkAqua, kAqua}), kAqua);
  EXPECT_EQ(this->bestMatch(light, {kDarkAqua}), std::nullopt);
  EXPECT_EQ(this->bestMatch(light, {}), std::nullopt);
}

TYPED_TEST(AppearanceContract, AViewThatIsDrawnHasTheAppearanceItIsHeldTo) {
  for (const auto desktopName : {kAqua, kDarkAqua}) {
    this->world.setDesktop(desktopName);
    EXPECT_EQ(this->whileDrawing(kAqua), kAqua);
    EXPECT_EQ(this->whileDrawing(kDarkAqua), kDarkAqua);
    EXPECT_EQ(this->whileDrawing(AppearanceName::Inherited), desktopName);
  }
}

TYPED_TEST(AppearanceContract, AViewInsideOfOneThatIsHeldToAnAppearanceHasIt) {
  this->world.setDesktop(kDarkAqua);
  std::optional<AppearanceName> found;
  this->world.drawInside(kAqua,
                         [&] { found = this->bestMatch(this->world.appearances().currentAppearance()); });
  EXPECT_EQ(found, kAqua);
}

TYPED_TEST(AppearanceContract, ADrawingWithinADrawingHasItsOwnAndAfterItTheOuterOneCountsAgain) {
  std::vector<std::optional<AppearanceName>> seen;
  const auto look = [&] { seen.push_back(this->bestMatch(this->world.appearances().currentAppearance())); };
  this->world.draw(kAqua, [&] {
    look();
    this->world.draw(kDarkAqua, look);
    look();
  });
  EXPECT_EQ(seen, (std::vector<std::optional<AppearanceName>>{kAqua, kDarkAqua, kAqua}));
}

TYPED_TEST(AppearanceContract, AStrokeColorIsThatOfLinesAndAFillColorThatOfAreas) {
  const DeviceColor red{1, 0, 0, 1};
  const DeviceColor blue{0, 0, 1, 1};
  this->world.graphics().setStrokeColor(red);
  this->world.graphics().setFillColor(blue);
  EXPECT_EQ(this->world.stroked(), red);
  EXPECT_EQ(this->world.filled(), blue);
  this->world.graphics().setStrokeColor(blue);
  EXPECT_EQ(this->world.stroked(), blue);
  EXPECT_EQ(this->world.filled(), blue);
}

}  // namespace
}  // namespace halvorn
