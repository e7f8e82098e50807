#include <gtest/gtest.h>

#include "tests/installer/unit/InstallerFixture.h"

namespace halvorn {
namespace {

class Completion : public InstallerFixture {
 protected:
  InstallerWinController& started(std::vector<Text> arguments = {}) {
    arguments.insert(arguments.begin(), {"-sourcePath", product});
    auto& controller = start(arguments);
    log.clear();
    return controller;
  }
};

TEST_F(Completion, SuccessShowsTheFinalMessageWithItsMark) {
  started().installationFinished(InstallOutcome::installed());
  EXPECT_EQ(window.introField.text_, Text("Foo was successfully installed."));
  EXPECT_TRUE(window.checkmarkField.visible());
  EXPECT_FALSE(window.cancelButton.visible());
  EXPECT_EQ(window.cancelButton.enabled_, Enabled::No);
  EXPECT_EQ(window.installButton.title_, Text("OK"));
  EXPECT_EQ(window.installButton.enabled_, Enabled::Yes);
  EXPECT_FALSE(window.pathField.visible());
  EXPECT_FALSE(window.explanationField.visible());
  EXPECT_FALSE(window.messageField.visible());
  EXPECT_FALSE(window.helpButton.visible());
  EXPECT_FALSE(window.progressIndicator.animating_);
  EXPECT_EQ(screenReader.announced.back(), Text("Foo was successfully installed."));
}

TEST_F(Completion, SuccessHidesAMessageThatWasShown) {
  auto& controller = started();
  window.messageField.setHidden(Hidden::No);
  controller.installationFinished(InstallOutcome::installed());
  EXPECT_FALSE(window.messageField.visible());
}

TEST_F(Completion, AfterSuccessTheInstallButtonQuits) {
  auto& controller = started();
  controller.installationFinished(InstallOutcome::installed());
  EXPECT_TRUE(controller.finished());
  window.installButton.click();
  EXPECT_EQ(application.terminations, 1);
  EXPECT_TRUE(workers.tasks.empty());
}

TEST_F(Completion, AFailureLeavesThePageAsItWasWithItsTextHidden) {
  auto& controller = started();
  const Text intro = window.introField.text_;
  window.installButton.setEnabled(Enabled::No);
  window.cancelButton.setEnabled(Enabled::No);
  controller.installationFinished(
      InstallOutcome::failed(InstallFailure::NotCopied, "Installation failed.\rTry."));
  EXPECT_EQ(window.messageField.text_, Text("Installation failed.\rTry."));
  EXPECT_FALSE(window.messageField.visible());
  EXPECT_EQ(window.introField.text_, intro);
  EXPECT_EQ(window.installButton.title_, Text("Install"));
  EXPECT_EQ(window.installButton.enabled_, Enabled::Yes);
  EXPECT_EQ(window.cancelButton.enabled_, Enabled::Yes);
  EXPECT_TRUE(window.cancelButton.visible());
  EXPECT_FALSE(controller.finished());
  EXPECT_EQ(screenReader.announced.back(), Text("Installation failed.\rTry.")) << "said aloud all the same";
}

TEST_F(Completion, ADismissedPasswordDialogSaysNothing) {
  started().installationFinished(InstallOutcome::canceled());
  EXPECT_EQ(window.messageField.text_, Text(""));
  EXPECT_TRUE(screenReader.announced.empty());
  EXPECT_EQ(window.cancelButton.enabled_, Enabled::Yes);
}

TEST_F(Completion, QuitsByItselfAfterTheDelayAlsoAfterAFailure) {
  for (const auto& outcome :
       {InstallOutcome::installed(), InstallOutcome::failed(InstallFailure::NotCopied, "x"),
        InstallOutcome::canceled()}) {
    application.terminations = 0;
    started({"-completionQuit", "2.5"}).installationFinished(outcome);
    EXPECT_EQ(linesWith("quit delay"), std::vector<std::string>{"quit delay: 2.5"});
    mainThread.runDelayed(2.4);
    EXPECT_EQ(application.terminations, 0);
    mainThread.runDelayed(2.5);
    EXPECT_EQ(application.terminations, 1);
  }
}

TEST_F(Completion, ADelayThatIsNotPositiveLeavesTheInstallerOpen) {
  const std::pair<const char*, const char*> cases[] = {
      {"0", "quit delay: 0.0"}, {"soon", "quit delay: 0.0"}, {"0.04", "quit delay: 0.0"}};
  for (const auto& [value, line] : cases) {
    mainThread.delayed.clear();
    started({"-completionQuit", value}).installationFinished(InstallOutcome::installed());
    EXPECT_EQ(linesWith("quit delay"), std::vector<std::string>{line}) << value;
    EXPECT_EQ(mainThread.delayed.size(), Text(value).floatValue() > 0 ? 1u : 0u) << value;
  }
}

TEST_F(Completion, WithoutADelayNothingIsLogged) {
  started().installationFinished(InstallOutcome::installed());
  EXPECT_TRUE(linesWith("quit delay").empty());
}

TEST_F(Completion, APendingQuitIsCancelledByNothing) {
  auto& controller = started({"-completionQuit", "1"});
  controller.installationFinished(InstallOutcome::failed(InstallFailure::NotCopied, "x"));
  window.installButton.click();
  controller.cancel();
  mainThread.runDelayed(1);
  EXPECT_EQ(application.terminations, 2) << "the cancel button's and the delayed one";
}

TEST_F(Completion, TheSoundPlaysOnSuccessOnlyAndOnlyForYes) {
  started({"-completionSound", "YES"}).installationFinished(InstallOutcome::installed());
  EXPECT_EQ(doneSoundsPlayed(), 1);
  started({"-completionSound", "yes"}).installationFinished(InstallOutcome::installed());
  started({"-completionSound", "YES "}).installationFinished(InstallOutcome::installed());
  started().installationFinished(InstallOutcome::installed());
  started({"-completionSound", "YES"})
      .installationFinished(InstallOutcome::failed(InstallFailure::NotCopied, "x"));
  EXPECT_EQ(doneSoundsPlayed(), 1);
}

TEST_F(Completion, TheNosoundDefaultSilencesSuccess) {
  defaults.values.emplace("nosound", true);
  started({"-completionSound", "YES"}).installationFinished(InstallOutcome::installed());
  EXPECT_EQ(doneSoundsPlayed(), 0);
}

TEST_F(Completion, TheFinalMessageIsTheTranslationFilledWithTheName) {
  strings.translations["%@ was successfully installed."] = "%@ wurde erfolgreich installiert.";
  strings.translations["OK"] = "Fertig";
  started().installationFinished(InstallOutcome::installed());
  EXPECT_EQ(window.introField.text_, Text("Foo wurde erfolgreich installiert."));
  EXPECT_EQ(window.installButton.title_, Text("Fertig"));
}

TEST_F(Completion, AFailureIsToldAroundTheWindowWithTheWholeSentenceAndTheLog) {
  started().installationFinished(
      InstallOutcome::failed(InstallFailure::NotCopied, "Installation failed.\rTry."));
  ASSERT_TRUE(desktopNotices.shown.has_value()) << "in the window it is not seen, even in front";
  EXPECT_EQ(desktopNotices.shown->kind, Notice::Kind::Failure);
  EXPECT_EQ(desktopNotices.shown->title, Text("Install Foo"));
  EXPECT_EQ(desktopNotices.shown->text, Text("Installation failed.\rTry."));
  EXPECT_EQ(desktopNotices.shown->actionTitle, Text("Show Log"));
  desktopNotices.shown->action();
  EXPECT_EQ(workspace.opened, std::vector<Text>{"/home/anna/Library/Logs/HalvornInstaller.log"});
  window.calls.clear();
  desktopNotices.shown->selected();
  EXPECT_EQ(window.calls, Calls{"window.makeKeyAndOrderFront"});
  EXPECT_EQ(application.requestsForAttention, 0) << "the person is here";
}

TEST_F(Completion, AWindowThatIsNotInFrontAsksForAttention) {
  window.window.isKey_ = false;
  started().installationFinished(InstallOutcome::failed(InstallFailure::NotCopied, "Installation failed."));
  EXPECT_EQ(application.requestsForAttention, 1);
}

TEST_F(Completion, ALogThatIsNoFileIsNotOffered) {
  bundles.mainBundle = product + Text("/Contents/Resources/Installer.app");
  start({}).installationFinished(InstallOutcome::failed(InstallFailure::NotCopied, "Installation failed."));
  ASSERT_TRUE(desktopNotices.shown.has_value());
  EXPECT_TRUE(desktopNotices.shown->actionTitle.isEmpty());
  desktopNotices.shown.reset();
  streams.unopenable.insert({StandardStreams::Stream::Error, "/home/anna/Library/Logs/HalvornInstaller.log"});
  started().installationFinished(InstallOutcome::failed(InstallFailure::NotCopied, "Installation failed."));
  ASSERT_TRUE(desktopNotices.shown.has_value());
  EXPECT_TRUE(desktopNotices.shown->actionTitle.isEmpty());
}

TEST_F(Completion, TheEndOfALongInstallationIsToldToWhoLooksElsewhere) {
  struct Case {
    double seconds;
    bool isInFront;
    bool isTold;
  };
  for (const Case& each : {Case{10, false, true}, {9.9, false, false}, {60, true, false}}) {
    desktopNotices.all.clear();
    application.requestsForAttention = 0;
    auto& controller = started();
    window.installButton.click();
    clock.sleep(each.seconds);
    window.window.isKey_ = each.isInFront;
    controller.installationFinished(InstallOutcome::installed());
    ASSERT_EQ(desktopNotices.all.size(), each.isTold ? 1U : 0U) << each.seconds;
    EXPECT_EQ(application.requestsForAttention, each.isTold ? 1 : 0) << each.seconds;
    if (!each.isTold) continue;
    EXPECT_EQ(desktopNotices.all[0].kind, Notice::Kind::Result);
    EXPECT_EQ(desktopNotices.all[0].text, Text("Foo was successfully installed."));
    EXPECT_TRUE(desktopNotices.all[0].actionTitle.isEmpty());
  }
}

TEST_F(Completion, ADismissedPasswordDialogIsToldNobody) {
  window.window.isKey_ = false;
  started().installationFinished(InstallOutcome::canceled());
  EXPECT_TRUE(desktopNotices.all.empty());
  EXPECT_EQ(application.requestsForAttention, 0);
}

TEST_F(Completion, TheNextTryTakesTheNoticeOfTheLastAway) {
  auto& controller = started();
  controller.installationFinished(InstallOutcome::failed(InstallFailure::NotCopied, "Installation failed."));
  ASSERT_TRUE(desktopNotices.shown.has_value());
  window.installButton.click();
  EXPECT_FALSE(desktopNotices.shown.has_value());
}

}  // namespace
}  // namespace halvorn
