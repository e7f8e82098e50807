#include <gtest/gtest.h>

#include "tests/installer/unit/InstallerFixture.h"

namespace halvorn {
namespace {

class InstallProgressOfWindow : public InstallerFixture {
 protected:
  // The installation has begun; its worker waits.
  InstallerWinController& begun() {
    auto& controller = start({"-sourcePath", product});
    itemSizes.sizes[product] = 1000;
    window.installButton.click();
    workers.tasks.back()();  // the look at how much there is
    controller.animateProgress(Animate::Yes);
    return controller;
  }
  // Half a second later.
  void look(double seconds = 0.5) {
    clock.sleep(seconds);
    mainThread.runDelayed(0.5);
  }
  [[nodiscard]] std::string words() const {
    return window.progressIndicator.progress_ ? window.progressIndicator.progress_->text.bytes() : "none";
  }
};

TEST_F(InstallProgressOfWindow, TellsHowMuchHasBeenCopiedAndThenHowLongTheRestTakes) {
  begun();
  EXPECT_EQ(words(), "none");
  look();
  EXPECT_EQ(words(), "none") << "nothing has been copied";
  copied.add(100);
  look();
  EXPECT_EQ(words(), "100 of 1000 B");
  EXPECT_EQ(application.progress, 0.1);
  EXPECT_EQ(window.progressIndicator.progress_->share, 0.1);
  copied.add(200);
  look(4);
  EXPECT_EQ(words(), "300 of 1000 B, about 14 s") << "at 50 B/s";
  copied.add(5000);
  look();
  EXPECT_EQ(words(), "1000 of 1000 B") << "a file has grown meanwhile";
  EXPECT_EQ(application.progress, 1.0);
}

TEST_F(InstallProgressOfWindow, TheSpinnerTurnsAndTheTextsStay) {
  begun();
  const Text intro = window.introField.text_;
  copied.add(100);
  look();
  EXPECT_TRUE(window.progressIndicator.animating_);
  EXPECT_EQ(window.introField.text_, intro);
}

TEST_F(InstallProgressOfWindow, IsGoneWhenAllIsDone) {
  auto& controller = begun();
  copied.add(100);
  look();
  controller.installationFinished(InstallOutcome::installed());
  EXPECT_EQ(words(), "none");
  EXPECT_EQ(application.progress, std::nullopt);
  copied.add(100);
  look();
  EXPECT_EQ(words(), "none") << "nobody follows it any more";
}

TEST_F(InstallProgressOfWindow, IsNotShownUnderThePasswordDialog) {
  auto& controller = begun();
  copied.add(100);
  look();
  controller.animateProgress(Animate::No);
  EXPECT_EQ(words(), "none");
  look();
  EXPECT_EQ(words(), "none");
  controller.animateProgress(Animate::Yes);
  EXPECT_EQ(words(), "100 of 1000 B");
}

TEST_F(InstallProgressOfWindow, TheNextTryBeginsAnew) {
  auto& controller = begun();
  copied.add(500);
  look();
  controller.installationFinished(InstallOutcome::failed(InstallFailure::NotCopied, "Installation failed."));
  window.installButton.click();
  EXPECT_EQ(copied.bytes(), 0U);
  controller.animateProgress(Animate::Yes);
  EXPECT_EQ(words(), "none");
}

TEST_F(InstallProgressOfWindow, WithoutASizeNothingIsTold) {
  auto& controller = start({"-sourcePath", product});
  window.installButton.click();
  workers.tasks.back()();
  controller.animateProgress(Animate::Yes);
  copied.add(100);
  look();
  EXPECT_EQ(words(), "none");
}

TEST_F(InstallProgressOfWindow, WhatTheToolCopiesCountsToo) {
  authorizer.bytesCopied = 700;
  auto& worker = makeWorker({{"sourcePath", product}, {"destinationPath", "/Applications/Foo.app"}});
  EXPECT_EQ(worker.authorizedInstall(product, "/Applications/Foo.app", std::nullopt),
            InstallWorker::AuthorizedInstall::Done);
  EXPECT_EQ(copied.bytes(), 700U);
}

}  // namespace
}  // namespace halvorn
