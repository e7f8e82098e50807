// The window is closed, or the session ends, while the worker is at work.
#include <gtest/gtest.h>

#include "tests/installer/unit/InstallerFixture.h"

namespace halvorn {
namespace {

using Lines = std::vector<std::string>;

constexpr char kNothingInstalled[] = "Left before anything was touched: nothing is installed";

class Leaving : public InstallerFixture {
 protected:
  void SetUp() override {
    InstallerFixture::SetUp();
    files.addFile("/Applications/Foo.app/old");
  }
  // Starts, clicks "Install" and runs the worker; the loop has ended, so nothing it posts is performed.
  void install(std::vector<Text> arguments = {}) {
    arguments.insert(arguments.begin(), {"-sourcePath", product});
    controller_ = &start(arguments);
    log.clear();
    clock.slept.clear();
    secondsAtStart_ = clock.monotonicSeconds();
    window.installButton.click();
    workers.runAll();
  }
  void leave() { controller_->leave(); }
  void endSession() {
    departure.sessionEnds.request();
    leave();
  }
  // Leaves when that much of the worker's time has passed.
  void leaveAfter(double seconds) {
    clock.onAdvance = [this, seconds](double now) {
      if (controller_ != nullptr && now - secondsAtStart_ >= seconds) leave();
    };
  }
  [[nodiscard]] bool nothingIsTouched() const {
    return trash.operations.empty() && authorizer.requests.empty() && workspace.opened.empty() &&
           workspace.registered.empty() && files.fileExists("/Applications/Foo.app/old") &&
           !files.fileExists("/Applications/Foo.app/Contents/Info.plist");
  }
  [[nodiscard]] bool isReplaced() const {
    return trash.trashed.contains("/Applications/Foo.app/old") &&
           files.fileExists("/Applications/Foo.app/Contents/Info.plist");
  }
  static std::ptrdiff_t count(const FakeApplication& application, const char* request) {
    return std::count(application.requests.begin(), application.requests.end(), request);
  }
  void lockApplications() { files.node("/Applications/Foo.app")->isWritable = false; }

 private:
  InstallerWinController* controller_ = nullptr;
  double secondsAtStart_ = 0;
};

TEST_F(Leaving, WhileTheProductIsAskedToQuitEndsThere) {
  const FakeApplication& running = addRunning("Foo", "FOOX", Stubborn::Forever);
  leaveAfter(1.2);
  install();
  EXPECT_TRUE(nothingIsTouched());
  EXPECT_EQ(count(running, "forceTerminate"), 0);
  EXPECT_TRUE(processes.appleEvents.sent.empty());
  ASSERT_EQ(log.lines().size(), 4u);
  EXPECT_EQ(log.lines()[1], "Quitting 'FOOX': Foo");
  EXPECT_TRUE(log.lines()[2].starts_with("quit Foo: given up after 1.2")) << log.lines()[2];
  EXPECT_EQ(log.lines()[3], kNothingInstalled);
}

TEST_F(Leaving, WhileTheProductIsForcedToQuitEndsThere) {
  const FakeApplication& running = addRunning("Foo", "FOOX", Stubborn::Forever);
  leaveAfter(4.5);
  install();
  EXPECT_TRUE(nothingIsTouched());
  EXPECT_GT(count(running, "forceTerminate"), 0);
  EXPECT_TRUE(processes.appleEvents.sent.empty());
  EXPECT_EQ(linesWith("given up").size(), 1u);
  EXPECT_EQ(log.lines().back(), kNothingInstalled);
}

TEST_F(Leaving, BetweenTwoAttemptsAsksNobodyAgain) {
  const FakeApplication& running = addRunning("Foo", "FOOX", Stubborn::Forever);
  leaveAfter(8.5);  // in the pause of a second after the first attempt
  install();
  EXPECT_TRUE(nothingIsTouched());
  EXPECT_LT(count(running, "terminate"), 4100) << "those of one attempt";
  EXPECT_EQ(linesWith("Quitting"), Lines{"Quitting 'FOOX': Foo"});
  EXPECT_TRUE(linesWith("refused").empty());
  EXPECT_EQ(log.lines().back(), kNothingInstalled);
}

TEST_F(Leaving, WhenTheProductHasQuitStillInstallsNothing) {
  FakeApplication& running = addRunning("Foo", "FOOX", Stubborn::Forever);
  running.quitting = FakeApplication::Quitting::WhenAsked;
  running.secondsToQuit = 0.3;
  leaveAfter(0.3);
  install();
  EXPECT_FALSE(processes.applications.isRunning(running));
  EXPECT_TRUE(nothingIsTouched());
  EXPECT_EQ(log.lines().back(), kNothingInstalled);
}

TEST_F(Leaving, BeforeTheWorkerBeganInstallsNothing) {
  InstallerWinController& controller = start({"-sourcePath", product});
  log.clear();
  window.installButton.click();
  controller.leave();
  workers.runAll();
  EXPECT_TRUE(nothingIsTouched());
  EXPECT_EQ(log.lines(), (Lines{"Install", kNothingInstalled}));
}

TEST_F(Leaving, BeforeTheDialogAsksForNoRights) {
  lockApplications();
  addRunning("Foo", "FOOX", Stubborn::QuitsAtSecondRequest);
  leaveAfter(1);
  install();
  EXPECT_TRUE(nothingIsTouched());
}

TEST_F(Leaving, WhileTheDialogIsOpenWithdrawsIt) {
  lockApplications();
  authorizer.onRequest = [this] { leave(); };
  install();
  EXPECT_TRUE(authorizer.isWithdrawn);
  EXPECT_EQ(authorizer.runs, 0);
  EXPECT_TRUE(trash.operations.empty());
  EXPECT_TRUE(workspace.opened.empty());
  EXPECT_EQ(log.lines(), (Lines{"Install", "Cannot write to item /Applications/Foo.app",
                                "User canceled authorization", kNothingInstalled}));
}

TEST_F(Leaving, WhileTheToolRunsLetsItFinishAndLaunches) {
  lockApplications();
  authorizer.onRun = [this] { leave(); };
  install();
  EXPECT_EQ(authorizer.runs, 1);
  EXPECT_EQ(workspace.registered.size(), 1u);
  EXPECT_EQ(workspace.opened.size(), 1u);
  EXPECT_TRUE(linesWith(kNothingInstalled).empty());
}

TEST_F(Leaving, BetweenTrashAndCopyFinishesAndLaunches) {
  files.onCopy = [this] {
    EXPECT_TRUE(trash.trashed.contains("/Applications/Foo.app/old"));
    leave();
  };
  install();
  EXPECT_TRUE(departure.left.isRequested());
  EXPECT_TRUE(isReplaced());
  EXPECT_EQ(log.lines(), (Lines{"Install", "successfully copied", "launching /Applications/Foo.app",
                                "registered app: 0", "launched immediately: 1"}));
}

TEST_F(Leaving, WithTheSessionBetweenTrashAndCopyFinishesButDoesNotLaunch) {
  files.onCopy = [this] { endSession(); };
  install();
  EXPECT_TRUE(isReplaced());
  EXPECT_EQ(workspace.registered.size(), 1u);
  EXPECT_TRUE(workspace.opened.empty());
  EXPECT_EQ(log.lines(), (Lines{"Install", "successfully copied", "launching /Applications/Foo.app",
                                "registered app: 0", "not launched: the session ends"}));
}

TEST_F(Leaving, WhileItLaunchesLaunchesAllTheSame) {
  workspace.openAnswers = {false, true};
  leaveAfter(0.7);
  install();
  EXPECT_TRUE(isReplaced());
  EXPECT_EQ(workspace.opened.size(), 2u);
}

TEST_F(Leaving, WithTheSessionWhileTheLaunchIsRetriedEndsTheRetries) {
  workspace.opens = false;
  clock.onAdvance = [this](double) {
    if (workspace.opened.size() == 2) endSession();
  };
  install();
  EXPECT_TRUE(isReplaced());
  EXPECT_EQ(workspace.opened.size(), 2u);
  EXPECT_EQ(log.lines().back(), "not launched: the session ends");
}

TEST_F(Leaving, ACopyThatFailsIsReportedAsEver) {
  files.onCopy = [this] {
    leave();
    files.take("/Volumes/NAS/Foo.app");
  };
  install();
  EXPECT_EQ(log.lines(), (Lines{"Install", "CAUSE -- No such file or directory: /Volumes/NAS/Foo.app (look)",
                                "ERROR -- Could not copy myself to /Applications/Foo.app"}));
}

// "completionQuit" comes due while the person has clicked "Install" again after a failure.
TEST_F(Leaving, ByTheDelayOfTheProductDuringASecondInstallationIsLeavingToo) {
  trash.refuses = true;
  InstallerWinController& controller = start({"-sourcePath", product, "-completionQuit", "0.5"});
  window.installButton.click();
  workers.runAll();
  mainThread.runAll();
  ASSERT_EQ(mainThread.delayed.size(), 2u)
      << "the end, and a look at how far it is that finds nothing any more";
  trash.refuses = false;
  FakeApplication& running = addRunning("Foo", "FOOX", Stubborn::Forever);
  window.installButton.click();
  clock.onAdvance = [&](double) {
    mainThread.runDelayed(0.5);
    // The loop ends, and that is where the program leaves.
    if (application.terminations > 0) controller.leave();
  };
  workers.runAll();
  EXPECT_GT(application.terminations, 0);
  EXPECT_TRUE(processes.applications.isRunning(running));
  EXPECT_EQ(trash.operations.size(), 1u) << "the first attempt's";
  EXPECT_TRUE(files.fileExists("/Applications/Foo.app/old"));
  EXPECT_TRUE(workspace.opened.empty());
}

}  // namespace
}  // namespace halvorn
