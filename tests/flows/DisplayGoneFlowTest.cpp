// The display goes away in each phase of an installation: the X server is killed, or the compositor. The toolkit ends the
// program by exit() then, with a status of its own.
#include "tests/flows/LeavingFlow.h"

namespace halvorn {
namespace {

namespace fs = std::filesystem;

constexpr char kGone[] = "The session ends: the display has gone";

struct Kind {
  const char* name;
  Compositor compositor;

  friend void PrintTo(const Kind& kind, std::ostream* stream) { *stream << kind.name; }
};

class TheDisplayGoes : public LeavingFlow, public testing::WithParamInterface<Kind> {
 protected:
  [[nodiscard]] DesktopParts parts() const override {
    return {.compositor = GetParam().compositor, .accessibility = true};
  }
  void signalDisplay(int signal) {
    ChildProcess* const display =
        GetParam().compositor == Compositor::None ? desktop().xServer() : desktop().compositor();
    display->sendSignal(signal);
  }
  void killDisplay() { signalDisplay(SIGKILL); }
  void expectTheToolkitsEnd(InstallerDriver& installer) {
    EXPECT_EQ(installer.process().waitForEnd(kPatience), 1) << "the toolkit's own status";
    EXPECT_TRUE(logHas(kGone)) << testing::PrintToString(wholeLog()) << installer.process().output();
  }
  // With a worker on the way to something that it does not begin any more.
  void expectNothingInstalled(InstallerDriver& installer) {
    expectTheToolkitsEnd(installer);
    expectNothingTouched();
    EXPECT_EQ(installerLog().back(), kNothingInstalled.front()) << testing::PrintToString(wholeLog());
  }
};

const auto kDesktops = testing::Values(Kind{"X11", Compositor::None}, Kind{"Sway", Compositor::Sway},
                                       Kind{"KWin", Compositor::KWin});
std::string nameOf(const testing::TestParamInfo<Kind>& kind) { return kind.param.name; }
INSTANTIATE_TEST_SUITE_P(Desktops, TheDisplayGoes, kDesktops, nameOf);

TEST_P(TheDisplayGoes, BeforeTheInstallationAndTheProgramEnds) {
  InstallerDriver installer(desktop(), {"-sourcePath", product()});
  ASSERT_TRUE(installer.waitForButton("Install", kPatience));
  killDisplay();
  expectTheToolkitsEnd(installer);
  expectNothingTouched();
  EXPECT_EQ(wholeLog(), kPlainStart + Lines{kGone});
}

TEST_P(TheDisplayGoes, WhileTheOldCopyIsAskedToQuitAndNothingIsTouched) {
  const auto running = startedAndStopped();
  InstallerDriver installer(desktop(), {"-sourcePath", product()});
  ASSERT_NO_FATAL_FAILURE(askToQuit(installer));
  killDisplay();
  expectNothingInstalled(installer);
  EXPECT_TRUE(running->isRunning()) << "it is not forced any more";
}

TEST_P(TheDisplayGoes, WhileTheOldCopyIsForcedToQuitAndNothingIsTouched) {
  const auto running = startedAndStopped();
  InstallerDriver installer(desktop(), {"-sourcePath", product()});
  ASSERT_NO_FATAL_FAILURE(askToQuit(installer));
  {
    const auto tracer = slowDown(installer, "pidfd_send_signal", "2000000");
    ASSERT_TRUE(eventually([&] { return isKilling(installer); }, kPatience));
    killDisplay();
    EXPECT_TRUE(eventually([&] { return !running->isRunning(); }, kPatience));
  }
  expectNothingInstalled(installer);
}

TEST_P(TheDisplayGoes, BetweenTrashAndCopyAndTheCopyIsFinished) {
  InstallerDriver installer(desktop(), {"-sourcePath", product()});
  ASSERT_TRUE(installer.waitForButton("Install", kPatience));
  {
    const auto tracer = slowDown(installer, "mkdirat", "1500000");
    ASSERT_TRUE(installer.click("Install"));
    ASSERT_TRUE(eventually([&] { return fs::exists(trashed()); }, kPatience));
    EXPECT_NE(versionOfBundle(destination()), "2.0");
    killDisplay();
    ASSERT_TRUE(eventually([&] { return logHas(kGone); }, kPatience)) << installer.process().output();
  }
  expectTheToolkitsEnd(installer);
  expectReplaced();
  expectNotLaunched();
}

TEST_P(TheDisplayGoes, WhileCopyingAndTheCopyIsFinished) {
  InstallerDriver installer(desktop(), {"-sourcePath", product()});
  {
    std::unique_ptr<ChildProcess> tracer;
    ASSERT_NO_FATAL_FAILURE(beginToCopy(installer, tracer));
    killDisplay();
    ASSERT_TRUE(eventually([&] { return logHas(kGone); }, kPatience)) << installer.process().output();
    EXPECT_FALSE(logHas("successfully copied"));
  }
  expectTheToolkitsEnd(installer);
  expectReplaced();
  expectNotLaunched();
  EXPECT_EQ(wholeLog(), kPlainStart + (Lines{"Install", kGone} + copiedAndNotLaunched()));
}

TEST_P(TheDisplayGoes, WhileLaunchingAndTheProductIsNotLaunched) {
  InstallerDriver installer(desktop(), {"-sourcePath", product()});
  ASSERT_TRUE(installer.click("Install"));
  // Half a second passes between this line and the next.
  ASSERT_TRUE(eventually([&] { return logHas("launching " + destination()); }, kPatience));
  killDisplay();
  expectTheToolkitsEnd(installer);
  expectReplaced();
  expectNotLaunched();
  EXPECT_EQ(installerLog().back(), "not launched: the session ends") << testing::PrintToString(wholeLog());
}

TEST_P(TheDisplayGoes, AfterTheInstallationAndWhatWasLaunchedStays) {
  InstallerDriver installer(desktop(), {"-sourcePath", product()});
  ASSERT_TRUE(installer.click("Install"));
  ASSERT_TRUE(installer.waitForText("Sample was successfully installed.", 60));
  EXPECT_TRUE(startedVersion("2.0"));
  killDisplay();
  expectTheToolkitsEnd(installer);
  expectReplaced();
  EXPECT_EQ(wholeLog(), kPlainStart + kInstallClicked + installLog() + Lines{kGone});
}

// As it comes to whoever writes to a display, a bus or a sound server that has gone.
TEST_F(LeavingFlow, ABrokenPipeEndsNoInstallation) {
  InstallerDriver installer(desktop(), {"-sourcePath", product()});
  {
    std::unique_ptr<ChildProcess> tracer;
    ASSERT_NO_FATAL_FAILURE(beginToCopy(installer, tracer));
    installer.process().sendSignal(SIGPIPE);
  }
  ASSERT_TRUE(installer.waitForText("Sample was successfully installed.", kPatience));
  expectReplaced();
  EXPECT_TRUE(startedVersion("2.0"));
}

class TheDisplayStops : public TheDisplayGoes {};
INSTANTIATE_TEST_SUITE_P(Desktops, TheDisplayStops, kDesktops, nameOf);

// Nobody sees the window then, and the copy does not wait for that.
TEST_P(TheDisplayStops, WhileCopyingAndTheRestComesWhenItGoesOn) {
  InstallerDriver installer(desktop(), {"-sourcePath", product()});
  {
    std::unique_ptr<ChildProcess> tracer;
    ASSERT_NO_FATAL_FAILURE(beginToCopy(installer, tracer));
    signalDisplay(SIGSTOP);
  }
  ASSERT_TRUE(eventually([&] { return logHas("successfully copied"); }, kPatience))
      << testing::PrintToString(wholeLog());
  expectReplaced();
  signalDisplay(SIGCONT);
  EXPECT_TRUE(installer.waitForText("Sample was successfully installed.", kPatience));
  EXPECT_TRUE(startedVersion("2.0"));
  EXPECT_EQ(wholeLog(), kPlainStart + kInstallClicked + installLog());
}

}  // namespace
}  // namespace halvorn
