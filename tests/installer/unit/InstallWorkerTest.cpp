#include <gtest/gtest.h>

#include "tests/installer/unit/InstallerFixture.h"

namespace halvorn {
namespace {

using Lines = std::vector<std::string>;

constexpr char kHint[] = "\rTry installing Foo manually by copying it to the Applications folder.";

class Worker : public InstallerFixture {
 protected:
  void SetUp() override {
    InstallerFixture::SetUp();
    files.addFile("/Volumes/NAS/Foo.app/Contents/Info.plist");
  }
  // Clicks "Install" and lets worker and main thread run to the end. The controller as it is then.
  InstallerWinController& install(std::vector<Text> arguments = {}) {
    arguments.insert(arguments.begin(), {"-sourcePath", product});
    InstallerWinController& controller = start(arguments);
    log.clear();
    clock.slept.clear();
    click();
    return controller;
  }
  void click() {
    window.installButton.click();
    workers.runAll();
    mainThread.runAll();
  }
  void lockApplications() { files.node("/Applications")->isWritable = false; }
};

const Lines kLaunchLines = {"successfully copied", "launching /Applications/Foo.app", "registered app: 0",
                            "launched immediately: 1"};

Lines after(Lines first, const Lines& then) {
  first.insert(first.end(), then.begin(), then.end());
  return first;
}

TEST_F(Worker, InstallsIntoAWritableFolderAndLaunchesTheProduct) {
  install();
  EXPECT_EQ(log.lines(), after({"Install"}, kLaunchLines));
  EXPECT_TRUE(files.fileExists("/Applications/Foo.app/Contents/Info.plist"));
  EXPECT_EQ(workspace.opened, std::vector<Text>{"/Applications/Foo.app"});
  EXPECT_EQ(workspace.registered, std::vector<Text>{"/Applications/Foo.app"});
  EXPECT_EQ(clock.slept, (std::vector<double>{0.5, 0.1}));
  EXPECT_EQ(window.introField.text_, Text("Foo was successfully installed."));
  EXPECT_TRUE(authorizer.requests.empty());
  EXPECT_TRUE(trash.operations.empty());
}

TEST_F(Worker, ButtonsAreDisabledAndProgressSpinsWhileItWorks) {
  start({"-sourcePath", product});
  window.installButton.click();
  EXPECT_EQ(window.installButton.enabled_, Enabled::No);
  EXPECT_EQ(window.cancelButton.enabled_, Enabled::No);
  EXPECT_FALSE(window.progressIndicator.animating_) << "nothing happens before the worker runs";
  workers.runAll();
  EXPECT_FALSE(window.progressIndicator.animating_) << "the worker only posts to the main thread";
  ASSERT_EQ(mainThread.queue.size(), 2u);
  mainThread.queue.front()();
  EXPECT_TRUE(window.progressIndicator.animating_);
  mainThread.runAll();
  EXPECT_FALSE(window.progressIndicator.animating_);
}

TEST_F(Worker, TheInstallerComesForwardWithItsFrontWindowOnlyAfterTheLaunch) {
  install();
  EXPECT_TRUE(installerFrontWindowCameToFront());
}

TEST_F(Worker, AnExistingCopyGoesToTheTrash) {
  files.addFile("/Applications/Foo.app/old");
  install();
  EXPECT_TRUE(trash.trashed.contains("/Applications/Foo.app/old"));
  EXPECT_EQ(window.introField.text_, Text("Foo was successfully installed."));
}

TEST_F(Worker, AnExistingCopyThatCannotBeTrashedIsReportedWithTheHint) {
  files.addFile("/Applications/Foo.app/old");
  trash.refuses = true;
  install();
  EXPECT_EQ(window.messageField.text_, Text("Could not delete existing copy.") + Text(kHint));
  EXPECT_EQ(log.lines(), (Lines{"Install", "CAUSE -- Permission denied: /Applications/Foo.app (move)",
                                "ERROR -- Could not trash '/Applications/Foo.app'",
                                "ERROR -- Could not trash existing /Applications/Foo.app"}));
  EXPECT_TRUE(files.fileExists("/Applications/Foo.app/old"));
}

TEST_F(Worker, AFailedCopyDoesNotFallBackToAuthorization) {
  files.take("/Volumes/NAS/Foo.app");
  install();
  EXPECT_EQ(window.messageField.text_, Text("Installation failed.") + Text(kHint));
  EXPECT_TRUE(authorizer.requests.empty());
  EXPECT_TRUE(workspace.opened.empty());
}

TEST_F(Worker, WithAWrapperTheFailureHasNoHint) {
  files.addFile("/Volumes/NAS/Suite/Foo.app/x");
  bundles.setInfo("/Volumes/NAS/Suite/Foo.app", {{"CFBundleSignature", "FOOX"}});
  files.addFolder("/Applications/Suite");
  trash.refuses = true;
  files.addFile("/Applications/Suite/Foo.app/old");
  install({"-sourcePath", "/Volumes/NAS/Suite/Foo.app", "-wrapperPath", "/Volumes/NAS/Suite"});
  EXPECT_EQ(window.messageField.text_, Text("Could not delete existing copy."));
}

TEST_F(Worker, ATranslationMayNameTheProduct) {
  strings.translations["Installation failed."] = "%1$@ konnte nicht installiert werden.";
  strings.translations["Try installing %1$@ manually by copying it to the Applications folder."] =
      "%1$@ kopieren.";
  files.take("/Volumes/NAS/Foo.app");
  install();
  EXPECT_EQ(window.messageField.text_, Text("Foo konnte nicht installiert werden.\rFoo kopieren."));
}

TEST_F(Worker, AProcessThatQuitsOnlyAtTheSecondAttemptIsRetriedOnceAfterASecond) {
  addRunning("Foo", "FOOX", Stubborn::QuitsAtSecondRequest);
  install();
  EXPECT_EQ(linesWith("did not quit"), Lines{"Foo did not quit; will retry"});
  EXPECT_EQ(std::count(clock.slept.begin(), clock.slept.end(), 1.0), 1);
  EXPECT_EQ(window.introField.text_, Text("Foo was successfully installed."));
}

TEST_F(Worker, AProcessThatRefusesForGoodCancelsTheInstallation) {
  addRunning("Foo Agent", "FOOX", Stubborn::Forever);
  install();
  EXPECT_EQ(window.messageField.text_, Text("Foo Agent cannot be running during the installation.\rQuit Foo "
                                            "Agent, then click \"Install\" again."));
  EXPECT_EQ(linesWith("refused"), Lines{"Foo Agent refused to quit; installation cancelled"});
  EXPECT_EQ(linesWith("did not quit"), Lines{"Foo Agent did not quit; will retry"})
      << "said once for three retries";
  EXPECT_EQ(linesWith("Still running").size(), 5u) << "after each of four passes, and once more";
  EXPECT_EQ(std::count(clock.slept.begin(), clock.slept.end(), 1.0), 3);
  EXPECT_FALSE(files.fileExists("/Applications/Foo.app"));
  EXPECT_EQ(window.installButton.enabled_, Enabled::Yes);
  EXPECT_EQ(window.cancelButton.enabled_, Enabled::Yes);
}

TEST_F(Worker, ADestinationThatCannotBeWrittenTakesTheToolWithAdministratorRights) {
  lockApplications();
  install();
  EXPECT_EQ(log.lines(), after({"Install", "Cannot write to folder /Applications"}, kLaunchLines));
  ASSERT_EQ(authorizer.requests.size(), 1u);
  EXPECT_EQ(authorizer.requests[0].toolPath, toolPath);
  EXPECT_EQ(authorizer.requests[0].arguments, (std::vector<Text>{product, "/Applications/Foo.app"}));
  EXPECT_EQ(authorizer.runs, 1);
  EXPECT_EQ(authorizer.freed, 1);
  EXPECT_EQ(window.introField.text_, Text("Foo was successfully installed."));
}

TEST_F(Worker, TheWrapperIsTheToolsThirdArgument) {
  lockApplications();
  files.addFile("/Volumes/NAS/Suite/Foo.app/x");
  bundles.setInfo("/Volumes/NAS/Suite/Foo.app", {{"CFBundleSignature", "FOOX"}});
  install({"-sourcePath", "/Volumes/NAS/Suite/Foo.app", "-wrapperPath", "/Volumes/NAS/Suite"});
  ASSERT_EQ(authorizer.requests.size(), 1u);
  EXPECT_EQ(
      authorizer.requests[0].arguments,
      (std::vector<Text>{"/Volumes/NAS/Suite/Foo.app", "/Applications/Suite/Foo.app", "/Volumes/NAS/Suite"}));
}

TEST_F(Worker, TheOptionKeyEnforcesAuthorizationOnAWritableDestination) {
  application.optionKey = true;
  install();
  EXPECT_EQ(log.lines(), after({"Install", "enforcing authorization"}, kLaunchLines));
  EXPECT_EQ(authorizer.requests.size(), 1u);
}

TEST_F(Worker, ProgressStopsBeforeThePasswordDialogAndGoesOnForTheTool) {
  lockApplications();
  std::vector<std::string> seen;
  authorizer.onRequest = [&] {
    mainThread.runAll();
    seen.push_back(window.progressIndicator.animating_ ? "dialog over a spinning window" : "dialog");
  };
  authorizer.onRun = [&] {
    mainThread.runAll();
    seen.push_back(window.progressIndicator.animating_ ? "tool" : "tool under a still window");
  };
  install();
  EXPECT_EQ(seen, (std::vector<std::string>{"dialog", "tool"}));
}

TEST_F(Worker, ACancelledPasswordDialogGivesAnEmptyMessageAndNoRetry) {
  lockApplications();
  authorizer.answer = AuthorizationAnswer::Canceled;
  window.messageField.text_ = "before";
  install();
  EXPECT_EQ(log.lines(),
            (Lines{"Install", "Cannot write to folder /Applications", "User canceled authorization"}));
  EXPECT_EQ(window.messageField.text_, Text(""));
  EXPECT_EQ(authorizer.requests.size(), 1u);
  EXPECT_EQ(authorizer.runs, 0);
  EXPECT_EQ(window.installButton.enabled_, Enabled::Yes);
  EXPECT_EQ(window.cancelButton.enabled_, Enabled::Yes);
  EXPECT_FALSE(window.progressIndicator.animating_);
  EXPECT_TRUE(screenReader.announced.empty() || screenReader.announced.back() != Text(""));
}

TEST_F(Worker, RefusedRightsAreAFailureAndTheProgressIsNotRestarted) {
  lockApplications();
  authorizer.answer = AuthorizationAnswer::Refused;
  install();
  EXPECT_EQ(log.lines(), (Lines{"Install", "Cannot write to folder /Applications",
                                "ERROR -- Could not copy myself to /Applications with authorization"}));
  EXPECT_EQ(window.messageField.text_, Text("Authorized copying failed.") + Text(kHint));
  EXPECT_EQ(std::count(window.calls.begin(), window.calls.end(), "progressIndicator.startAnimation"), 1);
}

struct End {
  ToolEnd end;
  Lines lines;
  bool isInstalled;
};

TEST_F(Worker, HowTheToolEndedDecidesAndIsLogged) {
  const std::string failed = "ERROR -- Could not copy myself to /Applications with authorization";
  const End ends[] = {
      {ToolExited{0}, {}, true},
      {ToolExited{1}, {"WEXITSTATUS", failed}, false},
      {ToolExited{2}, {"WEXITSTATUS", failed}, false},
      {ToolExited{255}, {"WEXITSTATUS", failed}, false},
      {ToolDied{9}, {"!WIFEXITED", failed}, false},
      {ToolNotStarted{-60008},
       {"AuthorizationExecuteWithPrivileges failed (" + toolPath.bytes() + ")", failed},
       false},
      // KEEP: nobody could wait for the tool, so it counts as having worked.
      {ToolUnknown{}, {"no pid"}, true},
  };
  for (const auto& [end, lines, isInstalled] : ends) {
    SCOPED_TRACE(lines.empty() ? "exit 0" : lines.front());
    lockApplications();
    authorizer.end = end;
    install();
    Lines expected = after({"Install", "Cannot write to folder /Applications"}, lines);
    EXPECT_EQ(log.lines(), isInstalled ? after(expected, kLaunchLines) : expected);
    EXPECT_EQ(window.checkmarkField.visible(), isInstalled);
  }
}

TEST_F(Worker, AMissingToolSurfacesAsAFailedStart) {
  lockApplications();
  bundles.bundles[bundles.mainBundle].resources.clear();
  authorizer.end = ToolNotStarted{-1};
  install();
  EXPECT_EQ(linesWith("AuthorizationExecute"), Lines{"AuthorizationExecuteWithPrivileges failed ((null))"});
  EXPECT_EQ(window.messageField.text_, Text("Authorized copying failed.") + Text(kHint));
}

TEST_F(Worker, ABlankDestinationIsRefusedWithoutADialog) {
  for (const Text& blank : {Text(""), Text(" \t\r\n"), Text("\xC2\xA0")}) {
    auto& worker = makeWorker();
    EXPECT_EQ(worker.authorizedInstall(product, blank, std::nullopt),
              InstallWorker::AuthorizedInstall::Failed);
    EXPECT_EQ(worker.authorizedInstall(blank, "/Applications/Foo.app", std::nullopt),
              InstallWorker::AuthorizedInstall::Failed);
  }
  EXPECT_TRUE(authorizer.requests.empty());
  EXPECT_TRUE(mainThread.queue.empty()) << "the progress animation is not touched either";
}

TEST_F(Worker, ABlankDestinationIsReportedAsAFailedAuthorizedCopy) {
  application.optionKey = true;
  auto& worker = makeWorker({{"productName", "Foo"}, {"sourcePath", product}, {"destinationPath", "  "}});
  const auto result = worker.installMyselfInDestination();
  EXPECT_EQ(result.kind, InstallWorker::CopyResult::Kind::Failed);
  EXPECT_EQ(result.messageKey, Text("Authorized copying failed."));
  EXPECT_TRUE(authorizer.requests.empty());
}

TEST_F(Worker, ALaunchRefusedElevenTimesIsOnlyLogged) {
  workspace.opens = false;
  install();
  Lines expected = {"Install", "successfully copied", "launching /Applications/Foo.app", "registered app: 0",
                    "launched immediately: 0"};
  for (int i = 0; i < 10; ++i) expected = after(expected, {"retry opening", "launched: 0"});
  EXPECT_EQ(log.lines(), expected);
  EXPECT_EQ(workspace.opened.size(), 11u);
  double waited = 0;
  for (const double seconds : clock.slept) waited += seconds;
  EXPECT_DOUBLE_EQ(waited, 0.5 + 0.1 + 5.0);
  EXPECT_EQ(window.introField.text_, Text("Foo was successfully installed."));
}

TEST_F(Worker, WhatNobodyWantsToBeLaunchedIsRegisteredAlone) {
  launch = LaunchInstalled::No;
  EXPECT_EQ(install().outcome(), InstallOutcome::installed());
  EXPECT_EQ(workspace.registered, std::vector<Text>{"/Applications/Foo.app"});
  EXPECT_TRUE(workspace.opened.empty());
  EXPECT_EQ(log.lines().back(), "not launched: nobody wants it");
}

TEST_F(Worker, TheLaunchIsRetriedOnlyUntilItSucceeds) {
  workspace.openAnswers = {false, false, true};
  install();
  EXPECT_EQ(linesWith("launched"), (Lines{"launched immediately: 0", "launched: 0", "launched: 1"}));
  EXPECT_EQ(workspace.opened.size(), 3u);
}

TEST_F(Worker, AMissingIconIsAskedForOnceMoreAfterASecond) {
  for (const bool succeeds : {true, false}) {
    workspace.iconAnswers = {false, succeeds};
    install();
    EXPECT_EQ(linesWith("icon"), Lines{"did not get icon"});
    EXPECT_EQ(linesWith("retry;"), Lines{succeeds ? "retry; succeeded" : "retry; failed"});
    EXPECT_EQ(clock.slept, (std::vector<double>{0.5, 0.1, 1.0}));
    files.take("/Applications/Foo.app");
  }
}

TEST_F(Worker, ARegistrationThatFailsIsOnlyLogged) {
  workspace.registerStatus = -10814;
  install();
  EXPECT_EQ(linesWith("registered"), Lines{"registered app: -10814"});
  EXPECT_TRUE(window.checkmarkField.visible());
}

TEST_F(Worker, TheDesktopIsToldThatTheDestinationChanged) {
  install();
  ASSERT_EQ(notices.paths.size(), 2u) << "by the copy and again by the worker";
  EXPECT_EQ(notices.paths.back(), "/Applications/Foo.app");
}

TEST_F(Worker, RightsThatCannotBeHadAreToldWhereThePersonIs) {
  desktopNotices.hasPlace = false;
  lockApplications();
  authorizer.answer = AuthorizationAnswer::Refused;
  authorizer.reason = "No administrator rights: this system has no pkexec";
  install();
  EXPECT_EQ(messages.told, std::vector<std::string>{std::string("Foo: Authorized copying failed.") + kHint +
                                                    "\rNo administrator rights: this system has no pkexec"});
  EXPECT_FALSE(window.messageField.visible()) << "the window's texts are as they were";
  authorizer.answer = AuthorizationAnswer::Canceled;
  install();
  EXPECT_EQ(messages.told.size(), 1U) << "who dismissed the question knows";
}

TEST_F(Worker, AFailureIsToldOnceAndTheNextOneHasItsOwnReason) {
  lockApplications();
  authorizer.answer = AuthorizationAnswer::Refused;
  authorizer.reason = "No administrator rights";
  auto& controller = install();
  EXPECT_EQ(controller.outcome()->reason(), Text("No administrator rights"));
  files.node("/Applications")->isWritable = true;
  files.take("/Volumes/NAS/Foo.app");
  click();
  ASSERT_EQ(desktopNotices.all.size(), 2U);
  EXPECT_EQ(desktopNotices.all[0].text,
            Text(std::string("Authorized copying failed.") + kHint + "\rNo administrator rights"));
  EXPECT_EQ(desktopNotices.all[1].text, Text(std::string("Installation failed.") + kHint));
  EXPECT_TRUE(messages.told.empty()) << "the notice said it";
}

TEST_F(Worker, WhatItFailedAtIsTold) {
  EXPECT_EQ(start({"-sourcePath", product}).outcome(), std::nullopt);
  EXPECT_EQ(install().outcome(), InstallOutcome::installed());
  trash.refuses = true;
  EXPECT_EQ(install().outcome()->failure(), InstallFailure::NotTrashed);
  trash.refuses = false;
  lockApplications();
  authorizer.answer = AuthorizationAnswer::Canceled;
  EXPECT_EQ(install().outcome(), InstallOutcome::canceled());
  authorizer.answer = AuthorizationAnswer::Refused;
  EXPECT_EQ(install().outcome()->failure(), InstallFailure::NotCopiedWithRights);
  addRunning("Foo Agent", "FOOX", Stubborn::Forever);
  EXPECT_EQ(install().outcome()->failure(), InstallFailure::RefusedToQuit);
}

TEST_F(Worker, AFailedCopyIsToldAsOne) {
  files.take("/Volumes/NAS/Foo.app");
  EXPECT_EQ(install().outcome()->failure(), InstallFailure::NotCopied);
}

TEST_F(Worker, AFailureCanBeFollowedByASecondClickThatSucceeds) {
  files.addFile("/Applications/Foo.app/old");
  trash.refuses = true;
  install();
  EXPECT_FALSE(window.checkmarkField.visible());
  trash.refuses = false;
  click();
  EXPECT_TRUE(window.checkmarkField.visible());
  EXPECT_FALSE(window.messageField.visible()) << "the error text is hidden by the final message";
  EXPECT_EQ(window.introField.text_, Text("Foo was successfully installed."));
}

}  // namespace
}  // namespace halvorn
