// What a compositor tells of the clipboard and of full screens.
#include <gtest/gtest.h>

#include <fstream>
#include <optional>

#include "Platform/running/posix/PollRunLoop.h"
#include "Platform/running/posix/PosixClock.h"
#include "Platform/session/linux/LinuxDesktopFacts.h"
#include "tests/support/DesktopEnvironment.h"
#include "tests/support/ZooBundle.h"

namespace halvorn {
namespace {

class WaylandFacts : public testing::Test {
 protected:
  void start(Compositor compositor, bool xClients = false) {
    const DesktopParts parts{.bus = false, .compositor = compositor, .xClients = xClients};
    if (const auto missing = Desktop::missing(parts)) GTEST_SKIP() << *missing;
    if (!programExists("wl-copy")) GTEST_SKIP() << "wl-clipboard is not installed";
    desktop = std::make_unique<Desktop>(parts);
    facts = std::make_unique<LinuxDesktopFacts>(environmentOf(*desktop), std::nullopt, loop, clock);
  }
  // In the foreground, so that it ends with the test.
  ChildProcess copy(const std::string& text) {
    return ChildProcess({"wl-copy", "--foreground", text}, {.environment = desktop->environment()});
  }
  void call(const std::vector<std::string>& command) {
    const auto result = runCommand(command, {.environment = desktop->environment()});
    EXPECT_EQ(result.status, 0) << result.output;
  }
  bool becomes(std::int64_t count) {
    return eventually([&] { return facts->clipboardChangeCount() == count; });
  }

  // Has the active window fill the screen, or no longer.
  void fillScreen(bool isFilled) {
    if (!desktop->swaySocket().empty()) {
      return call({"swaymsg", "-s", desktop->swaySocket(), "fullscreen", isFilled ? "enable" : "disable"});
    }
    const std::string name = isFilled ? "fill" : "unfill";
    const std::string script = desktop->folder() + "/" + name;
    std::ofstream(script) << "workspace.activeClient.fullScreen = " << (isFilled ? "true" : "false") << ";\n";
    const std::vector<std::string> kwin = {"gdbus",        "call", "--session",  "-d",
                                           "org.kde.KWin", "-o",   "/Scripting", "-m"};
    auto load = kwin;
    load.insert(load.end(), {"org.kde.kwin.Scripting.loadScript", script, name});
    call(load);
    auto run = kwin;
    run.emplace_back("org.kde.kwin.Scripting.start");
    call(run);
  }

  PollRunLoop loop;
  PosixClock clock;
  std::unique_ptr<Desktop> desktop;
  std::unique_ptr<LinuxDesktopFacts> facts;
};

// Of those that tell.
class FactsOfEachCompositor : public WaylandFacts, public testing::WithParamInterface<Compositor> {
 protected:
  void SetUp() override { start(GetParam()); }
};
INSTANTIATE_TEST_SUITE_P(Wayland, FactsOfEachCompositor, testing::Values(Compositor::Sway, Compositor::KWin),
                         [](const auto& parameters) {
                           return parameters.param == Compositor::Sway ? "Sway" : "KWin";
                         });

TEST_P(FactsOfEachCompositor, EveryChangeOfTheClipboardCountsFromTheFirstQuestionOn) {
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

TEST_P(FactsOfEachCompositor, TheMenuBarIsHiddenWhileTheActiveWindowFillsTheScreen) {
  std::vector<int> kinds;
  ASSERT_TRUE(facts->installMenuBarHandler([&](const MenuBarEvent& event) {
    kinds.push_back(event.kind);
    return EventAnswer::Handled;
  }));
  ChildProcess window({zooProgram(), "--windows", "1"}, {.environment = desktop->environment()});
  ASSERT_TRUE(window.waitForOutput("focus 0", kTestPatience));
  fillScreen(true);
  EXPECT_TRUE(loop.runUntil([&] { return kinds == std::vector{kMenuBarHiddenEvent}; }, kTestPatience));
  fillScreen(false);
  EXPECT_TRUE(loop.runUntil([&] { return kinds.size() == 2; }, kTestPatience));
  EXPECT_EQ(kinds.back(), kMenuBarShownEvent);
  desktop->compositor()->end(SIGKILL);
  loop.runFor(0.1);
  const auto rounds = loop.rounds();
  loop.runFor(0.3);
  EXPECT_LE(loop.rounds() - rounds, 1u) << "no spinning on what is gone";
}

// Its guest, the X server, hears of it.
TEST_F(WaylandFacts, OnGnomeTheClipboardIsKnownWhereItServesXPrograms) {
  if (!programExists("xclip")) GTEST_SKIP() << "xclip is not installed";
  start(Compositor::Gnome, true);
  EXPECT_EQ(facts->clipboardChangeCount(), 0);
  for (const std::int64_t count : {1, 2}) {
    ChildProcess owner({"xclip", "-quiet", "-selection", "clipboard", "-loops", "0"},
                       {.environment = desktop->environment()});
    owner.writeInput("text " + std::to_string(count));
    owner.closeInput();
    EXPECT_TRUE(eventually([&] { return facts->clipboardChangeCount() >= count; })) << count;
  }
}

TEST_F(WaylandFacts, ADesktopThatTellsNothingLeavesThemUnknown) {
  start(Compositor::Weston);
  EXPECT_EQ(facts->clipboardChangeCount(), std::nullopt);
  EXPECT_FALSE(facts->installMenuBarHandler([](const MenuBarEvent&) { return EventAnswer::Handled; }));
}

}  // namespace
}  // namespace halvorn
