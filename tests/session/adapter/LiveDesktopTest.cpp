// Clipboard, full screen, idle time and the helper application on a live X desktop.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>

#include "Platform/session/linux/WaylandSession.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/Desktop.h"
#include "tests/support/RealUtilities.h"
#include "tests/support/TemporaryFolder.h"

namespace halvorn {
namespace {

class LiveDesktop : public testing::Test {
 protected:
  void SetUp() override {
    const DesktopParts parts{.bus = false};
    if (const auto missing = Desktop::missing(parts)) GTEST_SKIP() << *missing;
    desktop.emplace(parts);
    real.emplace(*desktop);
  }

  std::unique_ptr<ChildProcess> startWindow() {
    auto window = std::make_unique<ChildProcess>(std::vector<std::string>{KT_WINDOW_PROBE},
                                                 ChildOptions{.environment = desktop->environment()});
    EXPECT_EQ(window->readLine(kTestPatience), "ready");
    tell(*window, "front");
    EXPECT_TRUE(comesToFront(*window));
    return window;
  }
  static void tell(ChildProcess& window, const std::string& word) {
    window.writeInput(word + "\n");
    EXPECT_EQ(window.readLine(kTestPatience), "done");
  }
  bool isInFront(const ChildProcess& window) {
    const KTProcessPointer front = real->processes.frontProcess();
    return front && front->unixPID() == window.pid();
  }
  bool comesToFront(const ChildProcess& window) {
    return real->loop.runUntil([&] { return isInFront(window); }, kTestPatience);
  }
  // 0 for nobody.
  std::int32_t publisher() {
    const KTProcessPointer process = real->utilities.clipboardPublisherProcess();
    return process ? process->unixPID() : 0;
  }
  void input(const std::vector<std::string>& words) {
    std::vector<std::string> arguments = {"xdotool"};
    arguments.insert(arguments.end(), words.begin(), words.end());
    EXPECT_EQ(runCommand(arguments, {.environment = desktop->environment()}).status, 0);
  }

  std::optional<Desktop> desktop;
  std::optional<RealUtilities> real;
};

TEST_F(LiveDesktop, FirstPublisherIsNobody) {
  const auto window = startWindow();
  EXPECT_EQ(publisher(), 0);
}

TEST_F(LiveDesktop, PublisherIsTheApplicationThatFilledTheClipboardInFront) {
  const auto editor = startWindow();
  EXPECT_EQ(publisher(), 0);
  tell(*editor, "copy");
  EXPECT_EQ(publisher(), editor->pid());
  // Another one in front has not published anything before it did.
  const auto viewer = startWindow();
  EXPECT_EQ(publisher(), editor->pid());
  tell(*viewer, "copy");
  EXPECT_EQ(publisher(), viewer->pid());
}

TEST_F(LiveDesktop, SwitchesAreFollowedWithoutBeingAsked) {
  const auto editor = startWindow();
  (void)publisher();
  real->loop.runFor(1.2);  // the watcher starts one second after the class was first used
  tell(*editor, "copy");
  const auto viewer = startWindow();
  real->loop.runFor(0.3);
  const auto player = startWindow();
  real->loop.runFor(0.3);
  tell(*viewer, "front");
  ASSERT_TRUE(comesToFront(*viewer));
  EXPECT_EQ(publisher(), editor->pid());
}

TEST_F(LiveDesktop, ClipboardCountsEachOwnerAndEachOwnersEnd) {
  LinuxDesktopFacts& facts = real->desktopFacts;
  const std::int64_t start = facts.clipboardChangeCount().value();
  EXPECT_EQ(facts.clipboardChangeCount(), start);
  auto editor = startWindow();
  tell(*editor, "copy");
  EXPECT_EQ(facts.clipboardChangeCount(), start + 1);
  tell(*editor, "copy");
  EXPECT_EQ(facts.clipboardChangeCount(), start + 2);
  editor.reset();
  EXPECT_TRUE(eventually([&] { return facts.clipboardChangeCount() == start + 3; }));
}

TEST_F(LiveDesktop, ToolsThatFillTheClipboardAreCountedToo) {
  if (!programExists("xclip")) GTEST_SKIP() << "xclip is not installed";
  const std::int64_t start = real->desktopFacts.clipboardChangeCount().value();
  ChildProcess tool({"xclip", "-quiet", "-selection", "clipboard", "-i"},
                    {.environment = desktop->environment()});
  tool.writeInput("text");
  tool.closeInput();
  EXPECT_TRUE(eventually([&] { return real->desktopFacts.clipboardChangeCount() == start + 1; }));
}

TEST_F(LiveDesktop, FullScreenFollowsTheActiveWindow) {
  const auto window = startWindow();
  EXPECT_FALSE(real->utilities.fullScreenMode());
  tell(*window, "fullscreen");
  EXPECT_TRUE(real->loop.runUntil([&] { return real->utilities.fullScreenMode(); }, kTestPatience));
  // A window in front of it shows the menu bar again, and so does the window's own return.
  auto other = startWindow();
  EXPECT_TRUE(real->loop.runUntil([&] { return !real->utilities.fullScreenMode(); }, kTestPatience));
  other.reset();
  EXPECT_TRUE(real->loop.runUntil([&] { return real->utilities.fullScreenMode(); }, kTestPatience));
  tell(*window, "windowed");
  EXPECT_TRUE(real->loop.runUntil([&] { return !real->utilities.fullScreenMode(); }, kTestPatience));
}

TEST_F(LiveDesktop, FullScreenOfAWindowThatWasThereBeforeIsToldFirst) {
  const auto window = startWindow();
  tell(*window, "fullscreen");
  real->loop.runFor(0.2);
  EXPECT_FALSE(real->utilities.fullScreenMode()) << "no event was handled yet";
  EXPECT_TRUE(real->loop.runUntil([&] { return real->utilities.fullScreenMode(); }, kTestPatience));
}

TEST_F(LiveDesktop, FullScreenEndsWithItsWindow) {
  auto window = startWindow();
  (void)real->utilities.fullScreenMode();
  tell(*window, "fullscreen");
  ASSERT_TRUE(real->loop.runUntil([&] { return real->utilities.fullScreenMode(); }, kTestPatience));
  window.reset();
  EXPECT_TRUE(real->loop.runUntil([&] { return !real->utilities.fullScreenMode(); }, kTestPatience));
}

TEST_F(LiveDesktop, IdleTimeGrowsUntilRealInput) {
  if (!programExists("xdotool")) GTEST_SKIP() << "xdotool is not installed";
  for (const std::vector<std::string>& words :
       {std::vector<std::string>{"mousemove_relative", "5", "5"}, std::vector<std::string>{"key", "a"},
        std::vector<std::string>{"click", "1"}}) {
    input(words);
    const double start = testSeconds();
    const float first = real->utilities.idleTime();
    EXPECT_GE(first, 0.0F);
    real->loop.runFor(0.4);
    const float later = real->utilities.idleTime();
    EXPECT_GE(later, 0.39F);
    EXPECT_LE(later, testSeconds() - start + 1.0);
    input(words);
    EXPECT_LT(real->utilities.idleTime(), later);
  }
}

TEST_F(LiveDesktop, MicroTakesTheFrontAndTheProgramBeforeGetsItBack) {
  const auto editor = startWindow();
  real->utilities.launchMicro(LeaveFocus::No);
  EXPECT_TRUE(isInFront(*editor));
  const auto lines = real->log.lines();
  ASSERT_EQ(lines.size(), 1u);
  int polls = -1;
  ASSERT_EQ(std::sscanf(lines[0].c_str(), "wait count (Micro) = %d", &polls), 1) << lines[0];
  EXPECT_GT(polls, 0);
  EXPECT_LT(polls, 500) << "the helper was in front";
  RecordProperty("polls", polls);
  // Micro itself ends and leaves the front where it is.
  real->loop.runFor(0.3);
  EXPECT_TRUE(isInFront(*editor));
}

TEST_F(LiveDesktop, MicroMayKeepTheFocusUntilItQuits) {
  const auto editor = startWindow();
  real->utilities.launchMicro(LeaveFocus::Yes);
  EXPECT_TRUE(comesToFront(*editor));
}

TEST_F(LiveDesktop, MicroIsNotStartedInFullScreenMode) {
  const auto editor = startWindow();
  (void)real->utilities.fullScreenMode();
  tell(*editor, "fullscreen");
  ASSERT_TRUE(real->loop.runUntil([&] { return real->utilities.fullScreenMode(); }, kTestPatience));
  real->utilities.launchMicro(LeaveFocus::No);
  EXPECT_TRUE(real->log.lines().empty()) << "it was not waited for";
}

TEST_F(LiveDesktop, HelperThatNeverComesGives500) {
  const TemporaryFolder folder;
  const std::string micro = folder / "Host.app/Contents/Resources/Micro.app/Contents";
  std::filesystem::create_directories(micro + "/Linux");
  std::filesystem::create_directories(folder / "Host.app/Contents/Linux");
  std::ofstream(micro + "/Linux/Micro") << "#!/bin/sh\nexit 0\n";
  ::chmod((micro + "/Linux/Micro").c_str(), 0755);
  std::filesystem::copy(KT_TEST_BUNDLE "/Contents/Resources/Micro.app/Contents/Info.plist", micro);
  real.emplace(*desktop, folder / "Host.app");
  const auto editor = startWindow();
  real->utilities.launchMicro(LeaveFocus::No);
  EXPECT_EQ(real->log.lines(), std::vector<std::string>{"wait count (Micro) = 500"});
  EXPECT_TRUE(isInFront(*editor));
}

TEST_F(LiveDesktop, ServerThatGoesLeavesAnswersAndAnIdleLoop) {
  const auto editor = startWindow();
  (void)publisher();
  (void)real->utilities.fullScreenMode();
  tell(*editor, "copy");
  const std::int64_t count = real->desktopFacts.clipboardChangeCount().value();
  EXPECT_GE(real->utilities.idleTime(), 0.0F);
  desktop->xServer()->end();
  real->loop.runFor(0.5);
  EXPECT_EQ(real->desktopFacts.clipboardChangeCount(), count);
  EXPECT_EQ(real->utilities.idleTime(), -1.0F);
  const std::uint64_t rounds = real->loop.rounds();
  real->loop.runFor(0.5);
  EXPECT_LT(real->loop.rounds() - rounds, 20u) << "nothing may spin on the closed connection";
}

// A session without a display.
class NoDisplay : public testing::Test {
 protected:
  NoDisplay() : desktop(DesktopParts{.display = false, .bus = false}), real(desktop) {}

  Desktop desktop;
  RealUtilities real;
};

TEST_F(NoDisplay, ClipboardStandsStillAndNobodyPublishes) {
  EXPECT_EQ(real.desktopFacts.clipboardChangeCount(), std::nullopt);
  EXPECT_EQ(real.utilities.clipboardPublisherProcess(), nullptr);
}

TEST_F(NoDisplay, FullScreenIsFalseAndSaysWhy) {
  EXPECT_FALSE(real.utilities.fullScreenMode());
  EXPECT_EQ(real.log.lines(), std::vector<std::string>{"could not install menu bar visibility event handl)"});
}

TEST_F(NoDisplay, IdleTimeIsUnknown) { EXPECT_EQ(real.utilities.idleTime(), -1.0F); }

TEST_F(NoDisplay, LaunchMicroGivesUpAfterItsPolls) {
  const double start = testSeconds();
  real.utilities.launchMicro(LeaveFocus::No);
  EXPECT_LT(testSeconds() - start, kTestPatience);
  EXPECT_EQ(real.log.lines().back(), "wait count (Micro) = 500");
}

TEST_F(NoDisplay, AndOneThatCannotBeReachedAreTheSame) {
  for (const std::optional<std::string>& name :
       {std::optional<std::string>(), std::optional<std::string>(""), std::optional<std::string>(":64123"),
        std::optional<std::string>("no display at all")}) {
    EXPECT_EQ(X11Pasteboard(name).changeCount(), std::nullopt);
    EXPECT_EQ(X11IdleTime(name).nanosecondsSinceLastInput(), std::nullopt);
    EXPECT_FALSE(
        X11MenuBar(name, real.loop).installHandler([](const MenuBarEvent&) { return EventAnswer::Handled; }));
  }
}

TEST(WaylandSession, IsToldByTheCompositorsDisplayOrByTheLoginManager) {
  const struct {
    Environment::Variables variables;
    bool isWayland;
  } sessions[] = {{{}, false},
                  {{{"DISPLAY", ":0"}, {"XDG_SESSION_TYPE", "x11"}}, false},
                  {{{"WAYLAND_DISPLAY", ""}}, false},
                  {{{"WAYLAND_DISPLAY", "wayland-0"}}, true},
                  {{{"DISPLAY", ":0"}, {"WAYLAND_DISPLAY", "wayland-0"}, {"XDG_SESSION_TYPE", "x11"}}, true},
                  {{{"DISPLAY", ":0"}, {"XDG_SESSION_TYPE", "wayland"}}, true}};
  for (const auto& [variables, isWayland] : sessions)
    EXPECT_EQ(isWaylandSession(Environment(variables)), isWayland) << testing::PrintToString(variables);
}

TEST(DisplayThatSeesAllInput, IsThatOfAnXSession) {
  EXPECT_EQ(displayThatSeesAllInput(Environment(Environment::Variables{{"DISPLAY", ":7"}})), ":7");
  EXPECT_EQ(displayThatSeesAllInput(
                Environment(Environment::Variables{{"DISPLAY", ":7"}, {"XDG_SESSION_TYPE", "x11"}})),
            ":7");
  EXPECT_EQ(displayThatSeesAllInput(Environment()), std::nullopt);
}

TEST(DisplayThatSeesAllInput, IsNoneOnAWaylandDesktop) {
  EXPECT_EQ(displayThatSeesAllInput(
                Environment(Environment::Variables{{"DISPLAY", ":0"}, {"WAYLAND_DISPLAY", "wayland-0"}})),
            std::nullopt);
  EXPECT_EQ(displayThatSeesAllInput(
                Environment(Environment::Variables{{"DISPLAY", ":0"}, {"XDG_SESSION_TYPE", "wayland"}})),
            std::nullopt);
}

}  // namespace
}  // namespace halvorn
