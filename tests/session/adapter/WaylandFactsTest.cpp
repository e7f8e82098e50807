// What a compositor tells of the clipboard and of full screens.
#include <gtest/gtest.h>

#include <optional>

#include "Platform/running/posix/PollRunLoop.h"
#include "Platform/running/posix/PosixClock.h"
#include "Platform/session/linux/LinuxDesktopFacts.h"
#include "tests/support/Desktop.h"
#include "tests/support/ZooBundle.h"

namespace halvorn {
namespace {

class WaylandFacts : public testing::Test {
 protected:
  void SetUp() override { start(Compositor::Sway); }
  void start(Compositor compositor) {
    const DesktopParts parts{.bus = false, .compositor = compositor};
    if (const auto missing = Desktop::missing(parts)) GTEST_SKIP() << *missing;
    if (!programExists("wl-copy")) GTEST_SKIP() << "wl-clipboard is not installed";
    desktop = std::make_unique<Desktop>(parts);
    Environment::Variables variables;
    for (const std::string& entry : desktop->environment()) {
      variables[entry.substr(0, entry.find('='))] = entry.substr(entry.find('=') + 1);
    }
    facts = std::make_unique<LinuxDesktopFacts>(Environment(variables), std::nullopt, loop, clock);
  }
  // In the foreground, so that it ends with the test.
  ChildProcess copy(const std::string& text) {
    return ChildProcess({"wl-copy", "--foreground", text}, {.environment = desktop->environment()});
  }
  void sway(const std::vector<std::string>& command) {
    std::vector<std::string> whole = {"swaymsg", "-s", desktop->swaySocket()};
    whole.insert(whole.end(), command.begin(), command.end());
    EXPECT_EQ(runCommand(whole, {.environment = desktop->environment()}).status, 0);
  }
  bool becomes(std::int64_t count) {
    return eventually([&] { return facts->clipboardChangeCount() == count; });
  }

  PollRunLoop loop;
  PosixClock clock;
  std::unique_ptr<Desktop> desktop;
  std::unique_ptr<LinuxDesktopFacts> facts;
};

TEST_F(WaylandFacts, EveryChangeOfTheClipboardCountsFromTheFirstQuestionOn) {
  const ChildProcess before = copy("before");
  EXPECT_TRUE(eventually([&] {
    return runCommand({"wl-paste"}, {.environment = desktop->environment()}).output.starts_with("before");
  }));
  EXPECT_EQ(facts->clipboardChangeCount(), 0);
  EXPECT_EQ(facts->clipboardChangeCount(), 0);
  const ChildProcess first = copy("first");
  EXPECT_TRUE(becomes(1));
  {
    const ChildProcess second = copy("second");
    EXPECT_TRUE(becomes(2));
  }
  EXPECT_TRUE(becomes(3)) << "emptied by its end";
  desktop->compositor()->end(SIGKILL);
  EXPECT_EQ(facts->clipboardChangeCount(), 3) << "once known it stays known";
}

TEST_F(WaylandFacts, TheMenuBarIsHiddenWhileTheActiveWindowFillsTheScreen) {
  std::vector<int> kinds;
  ASSERT_TRUE(facts->installMenuBarHandler([&](const MenuBarEvent& event) {
    kinds.push_back(event.kind);
    return EventAnswer::Handled;
  }));
  ChildProcess window({zooProgram(), "--windows", "1"}, {.environment = desktop->environment()});
  ASSERT_TRUE(window.waitForOutput("shown", kTestPatience));
  sway({"fullscreen", "enable"});
  EXPECT_TRUE(loop.runUntil([&] { return kinds == std::vector{kMenuBarHiddenEvent}; }, kTestPatience));
  sway({"fullscreen", "disable"});
  EXPECT_TRUE(loop.runUntil([&] { return kinds.size() == 2; }, kTestPatience));
  EXPECT_EQ(kinds.back(), kMenuBarShownEvent);
  desktop->compositor()->end(SIGKILL);
  loop.runFor(0.1);
  const auto rounds = loop.rounds();
  loop.runFor(0.3);
  EXPECT_LE(loop.rounds() - rounds, 1u) << "no spinning on what is gone";
}

TEST_F(WaylandFacts, ADesktopThatTellsNothingLeavesThemUnknown) {
  facts = nullptr;
  start(Compositor::Weston);
  EXPECT_EQ(facts->clipboardChangeCount(), std::nullopt);
  EXPECT_FALSE(facts->installMenuBarHandler([](const MenuBarEvent&) { return EventAnswer::Handled; }));
}

}  // namespace
}  // namespace halvorn
