#include "KTStuff/CocoaExtensions/ViewExtensions.h"

#include <gtest/gtest.h>

#include "tests/fakes/FakeScrollView.h"
#include "tests/fakes/FakeSystemFacts.h"

namespace halvorn {
namespace {

using KTViewExtensions::Animated;
using KTViewExtensions::LightAqua;
using KTViewExtensions::PreferTop;

// A document of 1000 x 2000 of which 200 x 100 are seen.
class ViewExtensionsTest : public testing::Test {
 protected:
  bool scroll(const Rect& rect, PreferTop preferTop = PreferTop::No) {
    return KTViewExtensions::animatedVerticalScrollRectToVisible(document, rect, preferTop);
  }

  Calls calls;
  FakeScrollView scrollView{calls, {1000, 2000}, {200, 100}};
  FakeDocument document{calls, scrollView};
  FakeSystemFacts system;
};

using AnimatedVerticalScroll = ViewExtensionsTest;

TEST_F(AnimatedVerticalScroll, IsAGroupOfOneAnimationAndThenTheScrollBars) {
  scrollView.origin_ = {0, 500};
  EXPECT_TRUE(scroll({0, 700, 10, 10}));
  EXPECT_EQ(calls, (Calls{"beginGrouping", "animate to 0 610", "endGrouping", "reflectScrolledClipView"}));
}

TEST_F(AnimatedVerticalScroll, ARectangleThatBeginsBeforeTheVisiblePartMeetsItsMinimumEdge) {
  scrollView.origin_ = {0, 500};
  EXPECT_TRUE(scroll({0, 300, 10, 10}));
  EXPECT_EQ(scrollView.target_, (Point{0, 300}));
}

TEST_F(AnimatedVerticalScroll, ARectangleTooTallWithoutPreferTopMeetsTheMinimumEdge) {
  scrollView.origin_ = {0, 500};
  EXPECT_TRUE(scroll({0, 700, 10, 300}));
  EXPECT_EQ(scrollView.target_, (Point{0, 700}));
  scrollView.origin_ = {0, 500};
  EXPECT_TRUE(scroll({0, 100, 10, 300}));
  EXPECT_EQ(scrollView.target_, (Point{0, 100}));
}

TEST_F(AnimatedVerticalScroll, ARectangleTooTallWithPreferTopMeetsTheMaximumEdge) {
  scrollView.origin_ = {0, 500};
  EXPECT_TRUE(scroll({0, 700, 10, 300}, PreferTop::Yes));
  EXPECT_EQ(scrollView.target_, (Point{0, 900})) << "900 to 1000 are seen, the rectangle ends at 1000";
  scrollView.origin_ = {0, 500};
  EXPECT_TRUE(scroll({0, 100, 10, 300}, PreferTop::Yes));
  EXPECT_EQ(scrollView.target_, (Point{0, 300}));
}

TEST_F(AnimatedVerticalScroll, PreferTopMakesNoDifferenceForARectangleThatFits) {
  scrollView.origin_ = {0, 500};
  EXPECT_TRUE(scroll({0, 700, 10, 100}, PreferTop::Yes));
  EXPECT_EQ(scrollView.target_, (Point{0, 700}));
}

TEST_F(AnimatedVerticalScroll, ARectangleAlreadyWhollyVisibleReturnsFalseAndStartsNoAnimation) {
  scrollView.origin_ = {30, 500};
  EXPECT_FALSE(scroll({0, 500, 10, 99}));
  EXPECT_FALSE(scroll({0, 540, 10, 20}));
  EXPECT_FALSE(scrollView.isAnimating());
  EXPECT_EQ(calls, Calls{});
}

// KEEP
TEST_F(AnimatedVerticalScroll, ARectangleWhoseFarEdgeExactlyMeetsTheVisibleFarEdgeAnimatesByZero) {
  scrollView.origin_ = {0, 500};
  EXPECT_TRUE(scroll({0, 580, 10, 20}));
  EXPECT_EQ(scrollView.target_, (Point{0, 500}));
  EXPECT_TRUE(scroll({0, 500, 10, 100})) << "as does one that fills what is seen";
}

// KEEP
TEST_F(AnimatedVerticalScroll, AfterwardsTheHorizontalOffsetIsZero) {
  scrollView.origin_ = {300, 500};
  EXPECT_TRUE(scroll({300, 700, 10, 10}));
  scrollView.finishAnimations();
  EXPECT_EQ(scrollView.origin_, (Point{0, 610}));
}

// KEEP
TEST_F(AnimatedVerticalScroll, TheNewOriginIsRoundedToSinglePrecision) {
  scrollView.document_.height = 1e9;
  FakeDocument longOne(calls, scrollView);
  const auto target = [&](double y) {
    EXPECT_TRUE(KTViewExtensions::animatedVerticalScrollRectToVisible(longOne, {0, y, 10, 0}, PreferTop::No));
    return scrollView.target_->y;
  };
  scrollView.origin_ = {0, 16'777'216.0};
  EXPECT_EQ(target(16'777'317.0), 16'777'216.0) << "one more has no place in a 32-bit float";
  scrollView.origin_ = {0, 0.0};
  EXPECT_EQ(target(100.1), static_cast<double>(static_cast<float>(100.1 - 100.0)));
  EXPECT_NE(target(100.1), 100.1 - 100.0);
}

TEST_F(AnimatedVerticalScroll, AViewInsideTheDocumentCountsInItsOwnCoordinates) {
  FakeDocument part(calls, scrollView, {0, 1000, 500, 500});
  scrollView.origin_ = {0, 1100};
  EXPECT_TRUE(KTViewExtensions::animatedVerticalScrollRectToVisible(part, {0, 300, 10, 10}, PreferTop::No));
  EXPECT_EQ(scrollView.target_, (Point{0, 1210}));
}

TEST_F(AnimatedVerticalScroll, OutsideAnyScrollViewTheComparisonsAloneAnswer) {
  FakeTreeView outside(calls, "outside");  // its visible rectangle is that of a null object
  const auto answer = [&](const Rect& rect) {
    return KTViewExtensions::animatedVerticalScrollRectToVisible(outside, rect, PreferTop::No);
  };
  EXPECT_TRUE(answer({0, 0, 0, 0})) << "zero meets zero";
  EXPECT_TRUE(answer({0, 5, 10, 10}));
  EXPECT_TRUE(answer({0, -5, 10, 10})) << "it begins before the visible part";
  EXPECT_EQ(calls, Calls{}) << "and there is nothing to be scrolled";
}

using ScrollRectToVisible = ViewExtensionsTest;

// KEEP
TEST_F(ScrollRectToVisible, AnimatedScrollsWithoutAnimationLikeThePlainCall) {
  for (const auto animated : {Animated::Yes, Animated::No}) {
    scrollView.origin_ = {0, 0};
    calls.clear();
    EXPECT_TRUE(KTViewExtensions::scrollRectToVisible(document, {300, 700, 10, 10}, animated));
    EXPECT_EQ(calls, Calls{"document.scrollRectToVisible"});
    EXPECT_EQ(scrollView.origin_, (Point{110, 610}));
    EXPECT_FALSE(KTViewExtensions::scrollRectToVisible(document, {300, 700, 10, 10}, animated));
  }
}

using ScrollPointAnimated = ViewExtensionsTest;

TEST_F(ScrollPointAnimated, GoesToThePointInAGroup) {
  KTViewExtensions::scrollPointAnimated(document, {50, 700});
  EXPECT_EQ(calls, (Calls{"beginGrouping", "animate to 50 700", "endGrouping", "reflectScrolledClipView"}));
}

TEST_F(ScrollPointAnimated, NeverGoesPastTheDocumentsEdges) {
  KTViewExtensions::scrollPointAnimated(document, {5000, 5000});
  EXPECT_EQ(scrollView.target_, (Point{800, 1900}));
  KTViewExtensions::scrollPointAnimated(document, {-5000, -5000});
  EXPECT_EQ(scrollView.target_, (Point{0, 0}));
}

TEST_F(ScrollPointAnimated, OutsideAnyScrollViewNothingHappens) {
  FakeTreeView outside(calls, "outside");
  KTViewExtensions::scrollPointAnimated(outside, {50, 700});
  EXPECT_EQ(calls, Calls{});
}

class BringToFront : public ViewExtensionsTest {
 protected:
  void SetUp() override {
    for (const auto& view : {back, middle, front}) holder->addSubview(*view, ViewPosition::Above, nullptr);
    calls.clear();
  }
  std::shared_ptr<FakeTreeView> make(const char* name) { return std::make_shared<FakeTreeView>(calls, name); }

  std::shared_ptr<FakeTreeView> holder = make("holder");
  std::shared_ptr<FakeTreeView> back = make("back");
  std::shared_ptr<FakeTreeView> middle = make("middle");
  std::shared_ptr<FakeTreeView> front = make("front");
};

TEST_F(BringToFront, TakesTheViewOutAndPutsItAboveAllOthers) {
  KTViewExtensions::bringToFrontInsideSuperView(*back);
  EXPECT_EQ(calls, (Calls{"back.superview", "back.removeFromSuperviewWithoutNeedingDisplay",
                          "holder.addSubview above all"}));
  EXPECT_EQ(holder->subviews_, (std::vector{middle.get(), front.get(), back.get()}));
}

TEST_F(BringToFront, OfTheFrontmostLeavesTheOrderUnchanged) {
  KTViewExtensions::bringToFrontInsideSuperView(*front);
  EXPECT_EQ(holder->subviews_, (std::vector{back.get(), middle.get(), front.get()}));
}

TEST_F(BringToFront, OfAViewWithoutSuperviewRemovesAndAddsNothing) {
  KTViewExtensions::bringToFrontInsideSuperView(*holder);
  EXPECT_EQ(calls, (Calls{"holder.superview", "holder.removeFromSuperviewWithoutNeedingDisplay"}));
  EXPECT_EQ(holder->superview_, nullptr);
}

using UseLightAquaAppearance = ViewExtensionsTest;

TEST_F(UseLightAquaAppearance, HoldsTheViewToLightAndFalseAfterTrueRestoresTheInheritedAppearance) {
  KTViewExtensions::useLightAquaAppearance(document, LightAqua::Yes, system);
  EXPECT_EQ(document.appearance(), AppearanceName::Aqua);
  KTViewExtensions::useLightAquaAppearance(document, LightAqua::No, system);
  EXPECT_EQ(document.appearance(), AppearanceName::Inherited);
}

TEST_F(UseLightAquaAppearance, On10_13AndOlderNeitherChangesAnything) {
  for (const double framework : {1561.6, 1638.9, 0.0}) {
    system.framework = framework;
    document.appearance_ = AppearanceName::DarkAqua;
    KTViewExtensions::useLightAquaAppearance(document, LightAqua::Yes, system);
    EXPECT_EQ(document.appearance(), AppearanceName::DarkAqua);
    KTViewExtensions::useLightAquaAppearance(document, LightAqua::No, system);
    EXPECT_EQ(document.appearance(), AppearanceName::DarkAqua);
  }
  system.framework = 1639.0;
  KTViewExtensions::useLightAquaAppearance(document, LightAqua::Yes, system);
  EXPECT_EQ(document.appearance(), AppearanceName::Aqua) << "10.14 itself has appearances";
}

}  // namespace
}  // namespace halvorn
