// Keys that are held down, on a Wayland desktop: there the program repeats them itself.
#include <memory>

#include "tests/window/adapter/LiveWindow.h"

namespace halvorn {
namespace {

class WindowOnSway : public LiveWindow {
 protected:
  void SetUp() override {
    if (!programExists("wtype")) GTEST_SKIP() << "wtype is not installed";
    if (!startDesktop({.bus = false, .compositor = Compositor::Sway})) GTEST_SKIP() << reason_;
  }
  void showWindow() {
    startWindow();
    tell({"window show", "select 1", "window front"});
    ASSERT_TRUE(eventually([&] { return ask("focus") != "none"; })) << "the window has the keyboard";
  }
  // The keyboard comes with the tool and goes with it; the window needs a moment to see that there is one.
  [[nodiscard]] std::unique_ptr<ChildProcess> heldReturn() const {
    return typed({"wtype", "-s", "400", "-P", "Return", "-s", "60000"});
  }
  [[nodiscard]] bool hasKeyboard() {
    return run({"swaymsg", "-s", desktop_->swaySocket(), "-r", "-t", "get_inputs"}).find("\"keyboard\"") !=
           std::string::npos;
  }
  [[nodiscard]] std::unique_ptr<ChildProcess> typed(const std::vector<std::string>& command) const {
    return std::make_unique<ChildProcess>(command, ChildOptions{.environment = desktop_->environment()});
  }
};

TEST_F(WindowOnSway, AHeldReturnPressesOnceAndEachFurtherPressAgain) {
  showWindow();
  auto held = heldReturn();
  EXPECT_TRUE(eventually([&] { return times("return\n") > 4; })) << probe_->output();
  held.reset();
  ASSERT_TRUE(eventually([&] { return !hasKeyboard(); }));
  EXPECT_EQ(times("action install:"), 1) << probe_->output();
  run({"wtype", "-s", "400", "-k", "Return"});
  EXPECT_TRUE(eventually([&] { return times("action install:") == 2; })) << probe_->output();
}

// Whether a key is repeated that was pressed before the window had the keyboard is up to the toolkit.
TEST_F(WindowOnSway, AReturnThatWasHeldWhenTheWindowCameUpPressesNothing) {
  constexpr double kLongerThanTheFirstRepeatTakes = 1.5;
  auto held = typed({"wtype", "-P", "Return", "-s", "60000"});
  ASSERT_TRUE(eventually([&] { return hasKeyboard(); }));
  showWindow();
  EXPECT_FALSE(eventually([&] { return times("action") > 0; }, kLongerThanTheFirstRepeatTakes))
      << probe_->output();
  held.reset();
  ASSERT_TRUE(eventually([&] { return !hasKeyboard(); }));
  run({"wtype", "-s", "400", "-k", "Return"});
  EXPECT_TRUE(eventually([&] { return times("action install:") == 1; })) << probe_->output();
  EXPECT_EQ(times("action"), 1) << probe_->output();
}

}  // namespace
}  // namespace halvorn
