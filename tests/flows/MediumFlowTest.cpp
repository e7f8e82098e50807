// From a bundle to an installed product, the way makers and people go: a medium made by halvorn, opened by what lies on it.
#include <functional>
#include <memory>

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

  [[nodiscard]] CommandResult inDesktop(const std::vector<std::string>& words) {
    return runCommand(words, {.environment = desktop().environment()});
  }
  [[nodiscard]] bool shows(const std::string& title) {
    return inDesktop({"xdotool", "search", "--onlyvisible", "--name", "^" + title + "$"}).status == 0;
  }
  // Until the condition holds: a key that comes before what it is meant for is lost.
  [[nodiscard]] bool pressUntil(const std::string& key, const std::function<bool()>& condition) {
    return eventually([&] {
      (void)inDesktop({"xdotool", "key", key});
      return eventually(condition, kTestPatience / 3);
    });
  }
  // To the installer's window, and its end.
  void expectStartedBy(const std::string& key) {
    EXPECT_TRUE(pressUntil(key, [&] { return !programsBelow(medium()).empty(); }));
    EXPECT_TRUE(eventually([&] { return shows("Install Sample"); }));
    EXPECT_TRUE(eventually([&] { return !endProgramsBelow(medium()) && !shows("Install Sample"); }));
  }
  // A file manager of its own for each file, so that nothing else is chosen in its window.
  [[nodiscard]] std::unique_ptr<ChildProcess> fileManagerWithChosen(const std::string& file) {
    auto manager = std::make_unique<ChildProcess>(std::vector<std::string>{"thunar", "--daemon"},
                                                  ChildOptions{.environment = desktop().environment()});
    // Asked before it is there, the bus would start another one.
    const bool isServing =
        inDesktop({"gdbus", "wait", "--session", "--timeout", "30", "org.freedesktop.FileManager1"}).status ==
        0;
    const bool isShown =
        isServing && inDesktop({"gdbus", "call", "--session", "--dest", "org.freedesktop.FileManager1",
                                "--object-path", "/org/freedesktop/FileManager1", "--method",
                                "org.freedesktop.FileManager1.ShowItems", "['file://" + file + "']", ""})
                             .status == 0;
    EXPECT_TRUE(isShown && eventually([&] { return shows("medium - Thunar"); })) << manager->output();
    return manager;
  }

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
  EXPECT_TRUE(eventually([&] { return shows("Install Sample"); }));
  EXPECT_TRUE(endProgramsBelow(medium()));
}

TEST_F(MediumFlow, AFileManagerOpensWhatLiesOnTheMedium) {
  if (!programExists("thunar")) GTEST_SKIP() << "thunar is not installed";
  makeMedium();
  if (IsSkipped() || HasFatalFailure()) return;
  auto manager = fileManagerWithChosen(medium() + "/Install Sample");
  expectStartedBy("Return");
  manager.reset();
  ASSERT_TRUE(eventually([&] { return !shows("medium - Thunar"); }));
  // Desktop entries it starts from nowhere but the menu's folders without asking: "Launch Anyway".
  manager = fileManagerWithChosen(medium() + "/Install Sample.desktop");
  ASSERT_TRUE(pressUntil("Return", [&] { return shows("Attention"); }));
  expectStartedBy("alt+l");
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
