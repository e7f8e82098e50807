// Launches, ends and front switches, with a desktop, without one, and when it goes away.
#include "tests/processes/adapter/LiveFixture.h"

namespace halvorn {
namespace {

class RealEvents : public LiveFixture {
 protected:
  void listen() {
    live->processes.installNotifications();
    live->loop.runFor(0.02);
  }
};

TEST_F(RealEvents, ABurstOf200LaunchesAndEndsLosesNoneAndLeavesNoObject) {
  startDesktopAndWatch();
  if (!live) return;
  listen();
  const std::string program = bundleProgram("Editor", "EDIT");
  for (int i = 0; i < 200; ++i) launch({program, "--windows", "1"});
  EXPECT_TRUE(live->settles([&] { return count("started") >= 200; }, 60)) << count("started");
  EXPECT_EQ(live->processes.allProcesses().size(), 201u);  // and this one
  for (ChildProcess& child : children) child.sendSignal(SIGKILL);
  EXPECT_TRUE(live->settles([&] { return count("ended") >= 200; }, 60)) << count("ended");
  EXPECT_EQ(count("started"), 200);
  EXPECT_EQ(count("ended"), 200);
  EXPECT_EQ(live->processes.applicationLaunchEndCount(), 400u);
  EXPECT_EQ(live->processes.cachedProcessesEnumerator(),
            std::vector<KTProcessPointer>{live->processes.currentProcess()});
}

TEST_F(RealEvents, ObserversNeverRunInsideACall) {
  startDesktopAndWatch();
  if (!live) return;
  listen();
  ChildProcess& child = startBundle("Editor", "EDIT");
  process(child)->quit();
  EXPECT_EQ(count("ended"), 0);  // no loop has run since it ended
  EXPECT_TRUE(live->settles([&] { return count("ended") == 1; }));
}

TEST_F(RealEvents, WhatRanBeforeIsNoNewsUntilItEnds) {
  startDesktopAndWatch();
  if (!live) return;
  ChildProcess& child = startBundle("Editor", "EDIT", {"--windows", "1"});
  EXPECT_TRUE(child.waitForOutput("shown", kTestPatience));
  giveItAMoment(child);  // starts are told apart by ticks of the clock
  listen();
  live->loop.runFor(0.1);
  EXPECT_EQ(count("started"), 0);
  child.end(SIGKILL);
  EXPECT_TRUE(live->settles([&] { return count("ended") == 1; }));
}

TEST_F(RealEvents, ALaunchBeforeTheFirstLookIsToldAndWhatRanIsNot) {
  watch({});
  ChildProcess& before = startBundle("Editor", "EDIT");
  giveItAMoment(before);
  live->processes.installNotifications();
  startBundle("Mail", "MAIL");
  EXPECT_TRUE(live->settles([&] { return count("started") == 1; }));
  live->loop.runFor(0.1);
  EXPECT_EQ(count("started"), 1);
  before.end(SIGKILL);
  EXPECT_TRUE(live->settles([&] { return count("ended") == 1; }));
}

TEST_F(RealEvents, WithADesktopNothingWakesTheProgramUp) {
  startDesktopAndWatch();
  if (!live) return;
  ChildProcess& child = startBundle("Editor", "EDIT", {"--windows", "1"});
  EXPECT_TRUE(child.waitForOutput("focus", kTestPatience));
  listen();
  live->loop.runFor(0.5);
  const auto before = live->loop.rounds();
  live->loop.runFor(2.5);
  EXPECT_EQ(live->loop.rounds(), before);
}

TEST_F(RealEvents, WithoutXLaunchesComeFromALookAtTheTableAndTheFrontIsUnknown) {
  watch({});
  listen();
  ChildProcess& child = startBundle("Editor", "EDIT");
  EXPECT_TRUE(live->settles([&] { return count("started") == 1; }));
  EXPECT_EQ(live->processes.frontProcess(), nullptr);
  const KTProcessPointer editor = process(child);
  EXPECT_FALSE(editor->isFrontProcess());
  editor->setFrontProcess();
  editor->setHidden(true);
  EXPECT_TRUE(editor->quitRunningApplicationWithTimeout(4.0F));
  EXPECT_TRUE(live->settles([&] { return count("ended") == 1; }));
  EXPECT_EQ(count("front"), 0);
}

TEST_F(RealEvents, ADisplayWithoutAServerIsAsGoodAsNone) {
  const double start = testSeconds();
  watch({.display = ":4711"});
  listen();
  EXPECT_EQ(live->processes.frontProcess(), nullptr);
  EXPECT_EQ(live->processes.allProcesses().size(), 1u);
  EXPECT_LT(testSeconds() - start, kTestPatience);
}

TEST_F(RealEvents, UnderWaylandTheTableIsLookedAtAndNothingIsGuessed) {
  watch({.waylandSocket = "/nowhere/wayland-4711"});
  listen();
  ChildProcess& child = startBundle("Editor", "EDIT");
  EXPECT_TRUE(live->settles([&] { return count("started") == 1; }));
  EXPECT_EQ(live->processes.frontProcess(), nullptr);
  EXPECT_EQ(count("front"), 0);
  child.end(SIGKILL);
  EXPECT_TRUE(live->settles([&] { return count("ended") == 1; }));
}

TEST_F(RealEvents, UnderWaylandWithXWindowsOnlyThoseAreTold) {
  startDesktop({.bus = false});
  if (!desktop) return;
  watch({.display = desktop->displayName(), .waylandSocket = "/nowhere/wayland-4711"});
  EXPECT_FALSE(live->windows.tellsAllWindows());
  listen();
  ChildProcess& withoutWindow = startBundle("Editor", "EDIT");
  EXPECT_TRUE(live->settles([&] { return count("started") == 1; }));
  ChildProcess& withWindow = startBundle("Mail", "MAIL", {"--windows", "1"});
  const KTProcessPointer mail = process(withWindow);
  EXPECT_TRUE(live->settles([&] { return mail->isFrontProcess(); }));
  EXPECT_TRUE(isListed(withoutWindow));
}

TEST_F(RealEvents, WithoutAWindowManagerTheTableIsLookedAt) {
  startDesktopAndWatch({.windowManager = false, .bus = false});
  if (!live) return;
  listen();
  EXPECT_FALSE(live->windows.tellsAllWindows());
  startBundle("Editor", "EDIT", {"--windows", "1"});
  EXPECT_TRUE(live->settles([&] { return count("started") == 1; }));
  EXPECT_EQ(live->processes.frontProcess(), nullptr);
}

TEST_F(RealEvents, AServerThatGoesAwayLeavesTheModelWorking) {
  startDesktopAndWatch();
  if (!live) return;
  listen();
  EXPECT_TRUE(live->windows.tellsAllWindows());
  desktop->xServer()->end(SIGKILL);
  live->loop.runFor(0.2);
  EXPECT_EQ(live->processes.frontProcess(), nullptr);
  const auto before = live->loop.rounds();
  live->loop.runFor(0.5);
  EXPECT_LE(live->loop.rounds() - before,
            2u);  // the look once a second, and no spinning on the dead connection
  ChildProcess& child = startBundle("Editor", "EDIT");
  EXPECT_TRUE(live->settles([&] { return count("started") == 1; }));
  EXPECT_TRUE(process(child)->quitRunningApplicationWithTimeout(4.0F));
}

TEST_F(RealEvents, AWindowManagerThatGoesAwayIsNoticed) {
  startDesktopAndWatch();
  if (!live) return;
  listen();
  desktop->windowManager()->end(SIGKILL);
  live->loop.runFor(0.2);
  EXPECT_FALSE(live->windows.tellsAllWindows());
}

}  // namespace
}  // namespace halvorn
