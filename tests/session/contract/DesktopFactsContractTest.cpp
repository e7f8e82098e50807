// The same cases for whatever tells a desktop's facts.
#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "DesktopWorlds.h"
#include "tests/support/TextPrinting.h"

namespace halvorn {
namespace {

template <typename Screen>
class ScreenContract : public testing::Test {
 protected:
  void SetUp() override {
    if (const auto missing = Screen::missing()) GTEST_SKIP() << *missing;
    screen = std::make_unique<Screen>();
  }
  std::unique_ptr<Screen> screen;
};
TYPED_TEST_SUITE(ScreenContract, ScreenWorlds);

TYPED_TEST(ScreenContract, ClipboardCountStandsStillWhileNothingChanges) {
  const std::int64_t count = this->screen->facts.clipboardChangeCount().value();
  EXPECT_EQ(this->screen->facts.clipboardChangeCount().value(), count);
}

TYPED_TEST(ScreenContract, ClipboardCountHasGrownWhenTheChangeIsMade) {
  const std::int64_t count = this->screen->facts.clipboardChangeCount().value();
  this->screen->copy();
  const std::int64_t next = this->screen->facts.clipboardChangeCount().value();
  EXPECT_GT(next, count);
  this->screen->copy();
  EXPECT_GT(this->screen->facts.clipboardChangeCount().value(), next);
}

TYPED_TEST(ScreenContract, MenuBarTellsWhenItIsHiddenAndShown) {
  std::vector<int> kinds;
  ASSERT_TRUE(this->screen->facts.installMenuBarHandler([&](const MenuBarEvent& event) {
    EXPECT_EQ(event.eventClass, kMenuEventClass);
    kinds.push_back(event.kind);
    return EventAnswer::NotHandled;
  }));
  EXPECT_TRUE(kinds.empty()) << "never inside the call";
  this->screen->fillTheScreen();
  EXPECT_TRUE(this->screen->serveUntil([&] { return kinds == std::vector<int>{kMenuBarHiddenEvent}; }));
  this->screen->leaveTheScreen();
  EXPECT_TRUE(this->screen->serveUntil([&] {
    return kinds == std::vector<int>{kMenuBarHiddenEvent, kMenuBarShownEvent};
  }));
}

template <typename Styles>
class StyleContract : public testing::Test {
 protected:
  void SetUp() override {
    if (const auto missing = Styles::missing()) GTEST_SKIP() << *missing;
    styles = std::make_unique<Styles>();
  }
  std::unique_ptr<Styles> styles;
};
TYPED_TEST_SUITE(StyleContract, StyleWorlds);

TYPED_TEST(StyleContract, IsDarkOrNothingAndAlwaysOfThisMoment) {
  EXPECT_EQ(this->styles->style.current(), std::nullopt);
  this->styles->choose(true);
  EXPECT_EQ(this->styles->style.current(), Text("Dark"));
  this->styles->choose(false);
  EXPECT_EQ(this->styles->style.current(), std::nullopt);
}

TYPED_TEST(StyleContract, ChangesAreTold) {
  int changes = 0;
  this->styles->style.installChangeHandler([&] { ++changes; });
  EXPECT_EQ(changes, 0) << "never inside the call";
  this->styles->choose(true);
  EXPECT_TRUE(this->styles->serveUntil([&] { return changes == 1; }));
  this->styles->choose(false);
  EXPECT_TRUE(this->styles->serveUntil([&] { return changes == 2; }));
}

}  // namespace
}  // namespace halvorn
