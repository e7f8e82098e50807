// The same cases against views that a test writes down and against the toolkit's widgets in a scroll area.
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "KTStuff/CocoaExtensions/ViewExtensions.h"
#include "ViewWorlds.h"
#include "tests/fakes/FakeSystemFacts.h"

namespace halvorn {
namespace {

using KTViewExtensions::Animated;
using KTViewExtensions::LightAqua;
using KTViewExtensions::PreferTop;

template <typename World>
class ViewsContract : public testing::Test {
 protected:
  World world;

  bool scroll(View& view, const Rect& rect, PreferTop preferTop = PreferTop::No) {
    return KTViewExtensions::animatedVerticalScrollRectToVisible(view, rect, preferTop);
  }
  // Where the scrolling from there ends.
  Point scrolledFrom(const Point& start, const Rect& rect, PreferTop preferTop = PreferTop::No) {
    world.placeAt(start);
    EXPECT_TRUE(scroll(world.document(), rect, preferTop));
    world.finishAnimations();
    return world.origin();
  }
};
TYPED_TEST_SUITE(ViewsContract, Worlds);

TYPED_TEST(ViewsContract, TheVisibleRectangleIsWhatTheClipViewShowsInTheViewsOwnCoordinates) {
  this->world.placeAt({30, 1450});
  EXPECT_EQ(this->world.document().visibleRect(), (Rect{30, 1450, 200, 100}));
  EXPECT_EQ(this->world.part().visibleRect(), (Rect{30, 450, 200, 50}))
      << "the upper half is beside the part";
  this->world.placeAt({600, 0});
  EXPECT_EQ(this->world.part().visibleRect(), Rect{}) << "none of it";
  EXPECT_EQ(this->world.document().enclosingScrollView()->contentView()->bounds(), (Rect{600, 0, 200, 100}));
}

TYPED_TEST(ViewsContract, ARectangleTooTallWithoutPreferTopMeetsTheVisibleAreaAtItsMinimumEdge) {
  EXPECT_EQ(this->scrolledFrom({0, 500}, {0, 700, 10, 300}), (Point{0, 700}));
  EXPECT_EQ(this->scrolledFrom({0, 500}, {0, 100, 10, 300}), (Point{0, 100}));
}

TYPED_TEST(ViewsContract, ARectangleTooTallWithPreferTopMeetsTheVisibleAreaAtItsMaximumEdge) {
  EXPECT_EQ(this->scrolledFrom({0, 500}, {0, 700, 10, 300}, PreferTop::Yes), (Point{0, 900}));
  EXPECT_EQ(this->scrolledFrom({0, 500}, {0, 100, 10, 300}, PreferTop::Yes), (Point{0, 300}));
}

TYPED_TEST(ViewsContract, ARectangleThatFitsIsBroughtIntoViewByTheLeastAmount) {
  EXPECT_EQ(this->scrolledFrom({0, 500}, {0, 700, 10, 20}), (Point{0, 620}));
  EXPECT_EQ(this->scrolledFrom({0, 500}, {0, 300, 10, 20}), (Point{0, 300}));
  EXPECT_EQ(this->scrolledFrom({0, 500}, {0, 590, 10, 20}), (Point{0, 510}));
}

TYPED_TEST(ViewsContract, ARectangleAlreadyWhollyVisibleReturnsFalseAndStartsNoAnimation) {
  this->world.placeAt({30, 500});
  EXPECT_FALSE(this->scroll(this->world.document(), {0, 540, 10, 20}));
  EXPECT_FALSE(this->world.isAnimating());
  EXPECT_EQ(this->world.origin(), (Point{30, 500}));
}

TYPED_TEST(ViewsContract, ARectangleWhoseFarEdgeExactlyMeetsTheVisibleFarEdgeReturnsTrueAndAnimatesByZero) {
  this->world.placeAt({0, 500});
  EXPECT_TRUE(this->scroll(this->world.document(), {0, 580, 10, 20}));
  EXPECT_TRUE(this->world.isAnimating());
  this->world.finishAnimations();
  EXPECT_EQ(this->world.origin(), (Point{0, 500}));
}

TYPED_TEST(ViewsContract, AfterAnAnimatedVerticalScrollTheHorizontalOffsetIsZero) {
  EXPECT_EQ(this->scrolledFrom({300, 500}, {300, 700, 10, 10}), (Point{0, 610}));
  EXPECT_EQ(this->scrolledFrom({300, 500}, {300, 590, 10, 10}), (Point{0, 500})) << "also by zero";
}

TYPED_TEST(ViewsContract, APartOfTheDocumentIsBroughtIntoViewInItsOwnCoordinates) {
  this->world.placeAt({0, 1100});
  EXPECT_TRUE(this->scroll(this->world.part(), {0, 300, 10, 10}));
  this->world.finishAnimations();
  EXPECT_EQ(this->world.origin(), (Point{0, 1210}));
}

TYPED_TEST(ViewsContract, NothingHasMovedYetWhenAnAnimatedScrollReturns) {
  this->world.placeAt({0, 500});
  EXPECT_TRUE(this->scroll(this->world.document(), {0, 900, 10, 10}));
  EXPECT_EQ(this->world.origin(), (Point{0, 500}));
  EXPECT_TRUE(this->world.isAnimating());
  this->world.finishAnimations();
  EXPECT_EQ(this->world.origin(), (Point{0, 810}));
  EXPECT_FALSE(this->world.isAnimating());
}

TYPED_TEST(ViewsContract, OutsideAnyScrollViewNothingIsScrolled) {
  EXPECT_EQ(this->world.outside().enclosingScrollView(), nullptr);
  static_cast<void>(this->scroll(this->world.outside(), {0, 5000, 10, 10}));
  KTViewExtensions::scrollPointAnimated(this->world.outside(), {100, 100});
  EXPECT_FALSE(
      KTViewExtensions::scrollRectToVisible(this->world.outside(), {0, 5000, 10, 10}, Animated::Yes));
  EXPECT_FALSE(this->world.isAnimating());
}

TYPED_TEST(ViewsContract, ScrollRectToVisibleAnimatedScrollsWithoutAnimationLikeThePlainCall) {
  for (const auto animated : {Animated::Yes, Animated::No}) {
    this->world.placeAt({0, 0});
    EXPECT_TRUE(KTViewExtensions::scrollRectToVisible(this->world.document(), {300, 700, 10, 10}, animated));
    EXPECT_EQ(this->world.origin(), (Point{110, 610}));
    EXPECT_FALSE(this->world.isAnimating());
    EXPECT_FALSE(KTViewExtensions::scrollRectToVisible(this->world.document(), {300, 700, 10, 10}, animated))
        << "it is visible now";
  }
}

TYPED_TEST(ViewsContract, ScrollRectToVisibleShowsAsMuchAsFitsOfARectangleTooLarge) {
  this->world.placeAt({0, 0});
  EXPECT_TRUE(this->world.document().scrollRectToVisible({300, 700, 400, 300}));
  EXPECT_EQ(this->world.origin(), (Point{300, 700}));
  EXPECT_FALSE(this->world.document().scrollRectToVisible({300, 700, 400, 300}));
  this->world.placeAt({800, 1900});
  EXPECT_TRUE(this->world.document().scrollRectToVisible({300, 700, 400, 300}));
  EXPECT_EQ(this->world.origin(), (Point{500, 900}));
}

TYPED_TEST(ViewsContract, ScrollRectToVisibleOfAPartCountsInItsOwnCoordinates) {
  this->world.placeAt({0, 0});
  EXPECT_TRUE(this->world.part().scrollRectToVisible({300, 300, 10, 10}));
  EXPECT_EQ(this->world.origin(), (Point{110, 1210}));
}

TYPED_TEST(ViewsContract, ScrollPointAnimatedEndsAtThePoint) {
  this->world.placeAt({0, 0});
  KTViewExtensions::scrollPointAnimated(this->world.document(), {120, 700});
  EXPECT_EQ(this->world.origin(), (Point{0, 0}));
  EXPECT_TRUE(this->world.isAnimating());
  this->world.finishAnimations();
  EXPECT_EQ(this->world.origin(), (Point{120, 700}));
}

TYPED_TEST(ViewsContract, ScrollPointAnimatedNeverGoesPastTheDocumentsEdges) {
  for (const auto& [asked, reached] : {std::pair<Point, Point>{{5000, 5000}, {800, 1900}},
                                       {{-5000, -5000}, {0, 0}},
                                       {{1e300, -1e300}, {800, 0}}}) {
    KTViewExtensions::scrollPointAnimated(this->world.document(), asked);
    this->world.finishAnimations();
    EXPECT_EQ(this->world.origin(), reached);
  }
}

TYPED_TEST(ViewsContract, ALaterAnimationTakesThePlaceOfTheOneUnderWay) {
  this->world.placeAt({0, 0});
  KTViewExtensions::scrollPointAnimated(this->world.document(), {0, 1900});
  KTViewExtensions::scrollPointAnimated(this->world.document(), {0, 300});
  this->world.finishAnimations();
  EXPECT_EQ(this->world.origin(), (Point{0, 300}));
}

TYPED_TEST(ViewsContract, BringToFrontPutsTheViewInFrontOfItsSiblings) {
  EXPECT_EQ(this->world.order(), "012");
  KTViewExtensions::bringToFrontInsideSuperView(this->world.sibling(0));
  EXPECT_EQ(this->world.order(), "120");
  KTViewExtensions::bringToFrontInsideSuperView(this->world.sibling(2));
  EXPECT_EQ(this->world.order(), "102");
}

TYPED_TEST(ViewsContract, BringToFrontOfTheFrontmostSubviewLeavesTheOrderUnchanged) {
  KTViewExtensions::bringToFrontInsideSuperView(this->world.sibling(2));
  EXPECT_EQ(this->world.order(), "012");
}

TYPED_TEST(ViewsContract, BringToFrontOfAViewWithoutSuperviewRemovesAndAddsNothing) {
  EXPECT_EQ(this->world.outside().superview(), nullptr);
  KTViewExtensions::bringToFrontInsideSuperView(this->world.outside());
  EXPECT_EQ(this->world.outside().superview(), nullptr);
  EXPECT_EQ(this->world.order(), "012");
}

TYPED_TEST(ViewsContract, ASubviewIsPutAboveOrBelowOneOrAllOfItsSiblings) {
  const auto holder = this->world.sibling(0).superview();
  ASSERT_NE(holder, nullptr);
  const auto put = [&](std::size_t index, ViewPosition position, View* relativeTo) {
    View& view = this->world.sibling(index);
    view.removeFromSuperviewWithoutNeedingDisplay();
    EXPECT_EQ(view.superview(), nullptr);
    holder->addSubview(view, position, relativeTo);
    EXPECT_NE(view.superview(), nullptr);
    return this->world.order();
  };
  EXPECT_EQ(put(2, ViewPosition::Below, nullptr), "201");
  EXPECT_EQ(put(2, ViewPosition::Above, &this->world.sibling(0)), "021");
  EXPECT_EQ(put(1, ViewPosition::Below, &this->world.sibling(0)), "102");
  EXPECT_EQ(put(1, ViewPosition::Above, &this->world.sibling(2)), "021");
}

TYPED_TEST(ViewsContract, HiddenAndShownViewsStaySoWhenTheyComeToTheFront) {
  this->world.sibling(0).setHidden(Hidden::Yes);
  for (const std::size_t index : {0u, 1u})
    KTViewExtensions::bringToFrontInsideSuperView(this->world.sibling(index));
  EXPECT_EQ(this->world.sibling(0).isHidden(), Hidden::Yes);
  EXPECT_EQ(this->world.sibling(1).isHidden(), Hidden::No);
}

TYPED_TEST(ViewsContract, UseLightAquaAppearanceFalseAfterTrueRestoresTheInheritedAppearance) {
  const FakeSystemFacts system;
  View& view = this->world.document();
  EXPECT_EQ(view.appearance(), AppearanceName::Inherited);
  KTViewExtensions::useLightAquaAppearance(view, LightAqua::Yes, system);
  EXPECT_EQ(view.appearance(), AppearanceName::Aqua);
  KTViewExtensions::useLightAquaAppearance(view, LightAqua::No, system);
  EXPECT_EQ(view.appearance(), AppearanceName::Inherited);
}

TYPED_TEST(ViewsContract, OnSystemsOlderThan10_14UseLightAquaAppearanceChangesNothing) {
  FakeSystemFacts system;
  system.framework = 1561.6;
  for (const auto held : {AppearanceName::DarkAqua, AppearanceName::Inherited}) {
    this->world.document().setAppearance(held);
    for (const auto light : {LightAqua::Yes, LightAqua::No}) {
      KTViewExtensions::useLightAquaAppearance(this->world.document(), light, system);
      EXPECT_EQ(this->world.document().appearance(), held);
    }
  }
}

}  // namespace
}  // namespace halvorn
