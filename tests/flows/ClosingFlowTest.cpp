// The window is closed, or the session ends, in each phase of an installation.
#include "tests/flows/LeavingFlow.h"

namespace halvorn {
namespace {

namespace fs = std::filesystem;

const Lines kGivenUp = {"quit Sample: given up after #s (# attempts)"};

// 0 closes the window, a negative one has the session manager end the session; else the signal that the program is sent.
constexpr int kCloseWindow = 0;
constexpr int kEndSession = -1;

class ClosingFlow : public LeavingFlow {
 protected:
  void SetUp() override {
    if (!programExists("wmctrl")) GTEST_SKIP() << "wmctrl is not installed";
    LeavingFlow::SetUp();
  }

  // From now on programs of the desktop are told when its session ends.
  void manageSession() {
    manager_ = std::make_unique<ChildProcess>(std::vector<std::string>{KT_SESSION_MANAGER});
    const auto address = manager_->readLine(kPatience);
    ASSERT_TRUE(address) << manager_->output();
    desktop().setEnvironment(*address);
  }

  void closeWindow() {
    const auto run = [&](const std::vector<std::string>& command) {
      const auto result = runCommand(command, {.environment = desktop().environment()});
      EXPECT_EQ(result.status, 0) << result.output;
      return result.output.substr(0, result.output.find('\n'));
    };
    run({"wmctrl", "-i", "-c", run({"xdotool", "search", "--onlyvisible", "--name", "^Install Sample$"})});
  }
  [[nodiscard]] bool windowIsThere() {
    const auto found = runCommand({"xdotool", "search", "--onlyvisible", "--name", "^Install Sample$"},
                                  {.environment = desktop().environment()});
    return found.status == 0;
  }
  void leave(InstallerDriver& installer, int way) {
    if (way == kCloseWindow) return closeWindow();
    if (way != kEndSession) return installer.process().sendSignal(way);
    EXPECT_TRUE(manager_->waitForOutput("registered", kPatience)) << manager_->output();
    manager_->sendSignal(SIGUSR1);
  }
  // What the log says of leaving in that way.
  static Lines leaving(int way) {
    if (way == kCloseWindow) return {};
    return {"The session ends: " + (way == kEndSession ? "asked to quit" : "signal " + std::to_string(way))};
  }
  static Lines launched(int way) { return way == kCloseWindow ? installLog() : copiedAndNotLaunched(); }
  void expectLaunchedUnlessTheSessionEnded(int way) {
    if (way == kCloseWindow) {
      EXPECT_TRUE(startedVersion("2.0"));
    } else {
      expectNotLaunched();
    }
  }

 private:
  std::unique_ptr<ChildProcess> manager_;
};

class EveryWayOfClosing : public ClosingFlow, public testing::WithParamInterface<int> {
 protected:
  void SetUp() override {
    ClosingFlow::SetUp();
    if (!IsSkipped() && GetParam() == kEndSession) manageSession();
  }
};

INSTANTIATE_TEST_SUITE_P(Ways, EveryWayOfClosing,
                         testing::Values(kCloseWindow, kEndSession, SIGTERM, SIGHUP, SIGINT),
                         [](const auto& way) {
                           switch (way.param) {
                             case kEndSession:
                               return "SessionManager";
                             case SIGTERM:
                               return "SIGTERM";
                             case SIGHUP:
                               return "SIGHUP";
                             case SIGINT:
                               return "SIGINT";
                             default:
                               return "CloseButton";
                           }
                         });

TEST_P(EveryWayOfClosing, BeforeTheInstallationEndsTheProgram) {
  InstallerDriver installer(desktop(), {"-sourcePath", product()});
  ASSERT_TRUE(installer.waitForButton("Install", kPatience));
  leave(installer, GetParam());
  EXPECT_EQ(installer.process().waitForEnd(kPatience), 0);
  expectNothingTouched();
  EXPECT_EQ(wholeLog(), kPlainStart + leaving(GetParam()));
}

TEST_P(EveryWayOfClosing, WhileTheOldCopyIsAskedToQuitNothingIsTouched) {
  const auto running = startedAndStopped();
  InstallerDriver installer(desktop(), {"-sourcePath", product()});
  ASSERT_NO_FATAL_FAILURE(askToQuit(installer));
  leave(installer, GetParam());
  EXPECT_EQ(installer.process().waitForEnd(kPatience), 0);
  EXPECT_TRUE(running->isRunning()) << "it is not forced any more";
  expectNothingTouched();
  EXPECT_EQ(wholeLog(),
            kPlainStart + kInstallClicked + kQuitting + leaving(GetParam()) + kGivenUp + kNothingInstalled);
}

TEST_P(EveryWayOfClosing, WhileTheOldCopyIsForcedToQuitNothingIsTouched) {
  const auto running = startedAndStopped();
  InstallerDriver installer(desktop(), {"-sourcePath", product()});
  ASSERT_NO_FATAL_FAILURE(askToQuit(installer));
  {
    const auto tracer = slowDown(installer, "pidfd_send_signal", "2000000");
    ASSERT_TRUE(eventually([&] { return isKilling(installer); }, kPatience));
    leave(installer, GetParam());
    EXPECT_TRUE(eventually([&] { return !running->isRunning(); }, kPatience));
  }
  EXPECT_EQ(installer.process().waitForEnd(kPatience), 0);
  expectNothingTouched();
  EXPECT_EQ(installerLog().back(), kNothingInstalled.front()) << testing::PrintToString(wholeLog());
  EXPECT_FALSE(logHas("successfully copied"));
}

TEST_P(EveryWayOfClosing, BetweenTwoAttemptsToQuitNothingIsTouched) {
  Respawner respawner(*this, fs::path(destination()) / "Contents/Linux/Sample");
  ASSERT_TRUE(startedVersion("1.0"));
  InstallerDriver installer(desktop(), {"-sourcePath", product()});
  ASSERT_TRUE(installer.click("Install"));
  ASSERT_TRUE(eventually([&] { return logHas("Sample did not quit; will retry"); }, kPatience));
  leave(installer, GetParam());
  EXPECT_EQ(installer.process().waitForEnd(kPatience), 0);
  expectNothingTouched();
  EXPECT_EQ(installerLog().back(), kNothingInstalled.front());
  EXPECT_FALSE(logHas("Sample refused to quit; installation cancelled"));
}

TEST_P(EveryWayOfClosing, BetweenTrashAndCopyTheCopyIsFinished) {
  InstallerDriver installer(desktop(), {"-sourcePath", product()});
  ASSERT_TRUE(installer.waitForButton("Install", kPatience));
  {
    const auto tracer = slowDown(installer, "mkdirat", "1500000");
    ASSERT_TRUE(installer.click("Install"));
    ASSERT_TRUE(eventually([&] { return fs::exists(trashed()); }, kPatience));
    EXPECT_NE(versionOfBundle(destination()), "2.0");
    leave(installer, GetParam());
    if (GetParam() != kCloseWindow) {
      // More of them are no more.
      for (int i = 0; i < 20; ++i) leave(installer, GetParam());
      // A tracer that goes takes along what it has not passed on yet.
      EXPECT_TRUE(eventually([&] { return logHas(leaving(GetParam()).front()); }, kPatience));
    }
    EXPECT_TRUE(installer.process().isRunning());
  }
  EXPECT_EQ(installer.process().waitForEnd(kPatience), 0);
  expectReplaced();
  expectLaunchedUnlessTheSessionEnded(GetParam());
  EXPECT_TRUE(logHas("successfully copied"));
  EXPECT_EQ(logHas("not launched: the session ends"), GetParam() != kCloseWindow);
}

TEST_P(EveryWayOfClosing, WhileCopyingTheCopyIsFinished) {
  InstallerDriver installer(desktop(), {"-sourcePath", product()});
  {
    std::unique_ptr<ChildProcess> tracer;
    ASSERT_NO_FATAL_FAILURE(beginToCopy(installer, tracer));
    leave(installer, GetParam());
    EXPECT_TRUE(eventually([&] { return !windowIsThere(); }, 3)) << "a window that answers nobody";
    EXPECT_FALSE(logHas("successfully copied"));
    EXPECT_TRUE(installer.process().isRunning());
  }
  EXPECT_EQ(installer.process().waitForEnd(kPatience), 0);
  expectReplaced();
  expectLaunchedUnlessTheSessionEnded(GetParam());
  EXPECT_EQ(wholeLog(), kPlainStart + kInstallClicked + leaving(GetParam()) + launched(GetParam()));
}

TEST_P(EveryWayOfClosing, WhileLaunchingOnlyTheEndOfTheSessionLeavesTheLaunchOut) {
  InstallerDriver installer(desktop(), {"-sourcePath", product()});
  ASSERT_TRUE(installer.click("Install"));
  // Half a second passes between this line and the next.
  ASSERT_TRUE(eventually([&] { return logHas("launching " + destination()); }, kPatience));
  leave(installer, GetParam());
  EXPECT_EQ(installer.process().waitForEnd(kPatience), 0);
  expectReplaced();
  expectLaunchedUnlessTheSessionEnded(GetParam());
  EXPECT_EQ(logHas("not launched: the session ends"), GetParam() != kCloseWindow);
}

TEST_F(ClosingFlow, TheDelayOfTheProductThatEndsDuringASecondInstallationIsALeavingToo) {
  InstallerDriver installer(desktop(), {"-sourcePath", product(), "-completionQuit", "6"});
  ASSERT_TRUE(installer.waitForButton("Install", kPatience));
  const fs::path away = image() / "away";
  fs::rename(product(), away);
  ASSERT_TRUE(installer.click("Install"));
  ASSERT_TRUE(eventually([&] { return logHas("quit delay: 6.0"); }, kPatience));
  fs::rename(away, product());
  ASSERT_TRUE(fs::exists(destination())) << "a copy that cannot be made moves nothing";
  // Two that cannot obey, four seconds each.
  const auto first = startedAndStopped();
  const auto second = startedAndStopped();
  ASSERT_TRUE(installer.click("Install"));
  ASSERT_TRUE(eventually([&] { return logHas(kQuitting.front()); }, 6));
  EXPECT_EQ(installer.process().waitForEnd(kPatience), 0);
  EXPECT_TRUE(first->isRunning() || second->isRunning());
  expectNothingTouched();
  EXPECT_EQ(installerLog().back(), kNothingInstalled.front()) << testing::PrintToString(wholeLog());
}

}  // namespace
}  // namespace halvorn
