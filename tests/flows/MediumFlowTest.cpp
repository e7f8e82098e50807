// From a bundle to an installed product, the way makers and people go: a medium made by halvorn, opened by what lies on it.
#include "tests/flows/FlowFixture.h"
#include "tests/support/TestFiles.h"

namespace halvorn {
namespace {

namespace fs = std::filesystem;

class MediumFlow : public FlowFixture {
 protected:
  // Unpacked, as nobody may mount here.
  void makeMedium() {
    if (!programExists("mksquashfs")) GTEST_SKIP() << "mksquashfs is not installed";
    const std::string image = folder_ / "Sample.squashfs";
    const CommandResult made =
        runCommand({KT_HALVORN, "image", product(), "-o", image, "--read-me", makeReadMe(this->image()),
                    "--documentation", makeGuide(this->image())},
                   {.environment = desktop().environment()}, 200);
    ASSERT_EQ(made.status, 0) << made.output;
    const CommandResult unpacked =
        runCommand({"unsquashfs", "-quiet", "-no-progress", "-d", medium(), image}, {}, 60);
    ASSERT_EQ(unpacked.status, 0) << unpacked.output;
  }
  [[nodiscard]] std::string medium() const { return folder_ / "medium"; }

  const TemporaryFolder folder_;
};

TEST_F(MediumFlow, WhatLiesOnTheMediumLeadsToTheInstalledProduct) {
  makeMedium();
  if (IsSkipped() || HasFatalFailure()) return;
  InstallerDriver installer(desktop(), {}, {.program = medium() + "/Install Sample"});
  ASSERT_TRUE(installer.click("Continue")) << installer.process().output();
  ASSERT_TRUE(installer.click("Install"));
  ASSERT_TRUE(installer.waitForText("Sample was successfully installed.", 60))
      << installer.process().output();
  EXPECT_TRUE(startedVersion("2.0")) << report();
  EXPECT_TRUE(sameTree(product(), destination()));
  const CommandResult audit =
      runCommand({KT_HALVORN, "audit", medium() + "/.halvorn/Sample.app", destination()}, {}, 60);
  EXPECT_EQ(audit.status, 0) << audit.output;
}

// As file managers start it: by the entry, from a folder that says nothing.
TEST_F(MediumFlow, TheDesktopEntryOpensTheWindow) {
  makeMedium();
  if (IsSkipped() || HasFatalFailure()) return;
  if (!programExists("gio")) GTEST_SKIP() << "gio is not installed";
  const CommandResult launched =
      runCommand({"gio", "launch", medium() + "/Install Sample.desktop"},
                 {.environment = desktop().environment(), .workingFolder = medium()});
  ASSERT_EQ(launched.status, 0) << launched.output;
  EXPECT_TRUE(eventually([&] {
    return runCommand({"xdotool", "search", "--onlyvisible", "--name", "^Install Sample$"},
                      {.environment = desktop().environment()})
               .status == 0;
  }));
  EXPECT_TRUE(endProgramsBelow(medium()));
}

TEST_F(MediumFlow, AFailureIsToldByTheDesktop) {
  ChildProcess service({KT_SESSION_SERVICES, "notifications", desktop().busAddress()},
                       {.environment = desktop().environment()});
  ASSERT_EQ(service.readLine(kTestPatience), "ready");
  InstallerDriver installer(desktop(), {"-sourcePath", product()});
  ASSERT_TRUE(installer.waitForButton("Install", 30));
  fs::rename(product(), image() / "away");
  ASSERT_TRUE(installer.click("Install"));
  EXPECT_TRUE(service.waitForOutput(
      "notified Halvorn Installer|Install Sample|Installation failed.\\nTry installing Sample "
      "manually by copying it to the "
      "Applications folder.|dialog-error\n",
      60))
      << service.output();
  EXPECT_TRUE(installer.waitForButton("Install", 20)) << "the page is as it was";
}

}  // namespace
}  // namespace halvorn
