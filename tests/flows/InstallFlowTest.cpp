// Whole installations through the real window, on a desktop of the test's own.
#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "tests/flows/FlowFixture.h"
#include "tests/flows/WholeLog.h"

namespace halvorn {
namespace {

namespace fs = std::filesystem;
const Lines kStillRunning = {"Still running 'SMPL': Sample"};

class InstallFlow : public FlowFixture {
 protected:
  // What a screen reader is told is at work.
  static Lines busyRoles(const InstallerDriver& installer) {
    Lines roles;
    for (const Control& control : installer.controls()) {
      if (control.has("busy")) roles.push_back(control.role);
    }
    return roles;
  }
};

// No display, and nothing of the person's is touched.
TEST_F(InstallFlow, QuestionsAboutTheProgramAreAnsweredWithoutAWindow) {
  const ChildOptions nowhere{.environment = {"HOME=/nonexistent", "PATH=/usr/bin:/bin"}};
  const auto version = runCommand({builtInstaller(), "--version"}, nowhere);
  EXPECT_EQ(version.status, 0);
  EXPECT_EQ(version.output, "HalvornInstaller 1.0.0\n");
  const auto help = runCommand({builtInstaller(), "--help"}, nowhere);
  EXPECT_EQ(help.status, 0);
  EXPECT_NE(help.output.find("-sourcePath PATH"), std::string::npos) << help.output;
}

TEST_F(InstallFlow, StartedAgainForTheSameDestinationTheFirstComesForwardAndTheSecondEnds) {
  const auto tool = [&](const std::vector<std::string>& command) {
    return runCommand(command, {.environment = desktop().environment()});
  };
  const auto isShown = [&] {
    return tool({"xdotool", "search", "--onlyvisible", "--name", "^Install Sample$"}).status == 0;
  };
  {
    InstallerDriver first(desktop(), {"-sourcePath", product()});
    ASSERT_TRUE(first.waitForButton("Install", 30));
    ASSERT_EQ(tool({"sh", "-c", "xdotool search --name '^Install Sample$' windowminimize"}).status, 0);
    ASSERT_TRUE(eventually([&] { return !isShown(); }, kTestPatience));
    InstallerDriver second(desktop(), {"-sourcePath", product()});
    EXPECT_EQ(second.process().waitForEnd(30), 0);
    EXPECT_TRUE(eventually(isShown, kTestPatience)) << "the first one's window is there again";
    EXPECT_TRUE(first.process().isRunning());
    EXPECT_EQ(countOf("Another installer is there for " + destination() + ": it comes to the front"), 1);
    first.process().sendSignal(SIGKILL);
    EXPECT_NE(first.process().waitForEnd(30), 0);
  }
  InstallerDriver third(desktop(), {"-sourcePath", product()});
  EXPECT_TRUE(third.waitForButton("Install", 30)) << "a dead installer keeps nobody out";
}

TEST_F(InstallFlow, FromTheReadMeToTheFinalMessageWithTheWholeLog) {
  installFromTheReadMe([](InstallerDriver& installer) {
    ASSERT_TRUE(installer.click("OK"));
    EXPECT_EQ(installer.process().waitForEnd(20), 0);
  });
}

TEST_F(InstallFlow, ShellsKnowBothProgramsByTheirEntriesAndSeeAPicture) {
  const auto property = [&](const std::string& title, const std::string& name) {
    return runCommand({"xprop", "-name", title, name}, {.environment = desktop().environment()}).output;
  };
  const auto has = [&](const std::string& title, const std::string& name, const std::string& text) {
    return eventually([&] { return property(title, name).find(text) != std::string::npos; }, kTestPatience);
  };
  InstallerDriver installer(desktop(), {"-sourcePath", product()});
  ASSERT_TRUE(installer.waitForButton("Install", 30));
  EXPECT_EQ(windowClassOfInstallersEntry(), "HalvornInstaller");
  EXPECT_TRUE(has("Install Sample", "WM_CLASS", "\"" + windowClassOfInstallersEntry() + "\""))
      << property("Install Sample", "WM_CLASS");
  for (const char* size : {"16 x 16", "32 x 32", "48 x 48", "128 x 128"})
    EXPECT_TRUE(has("Install Sample", "_NET_WM_ICON", std::string("Icon (") + size)) << size;
  ASSERT_TRUE(installer.click("Install"));
  ASSERT_TRUE(installer.waitForText("Sample was successfully installed.", 60));
  ASSERT_NE(windowClassOfProductsEntry(), "");
  EXPECT_TRUE(has("Sample 2.0", "WM_CLASS", "\"" + windowClassOfProductsEntry() + "\""))
      << property("Sample 2.0", "WM_CLASS");
}

TEST_F(InstallFlow, AnIconThatDesktopsCannotReadStandsInTheirMenusAllTheSame) {
  if (!programExists("convert")) GTEST_SKIP() << "imagemagick is not installed";
  const std::string icon = product() + "/Contents/Resources/Sample.png";
  ASSERT_EQ(runCommand({"convert", icon, "-resize", "48x48!", "tiff:" + icon}).status, 0);
  InstallerDriver installer(desktop(), {"-sourcePath", product()});
  ASSERT_TRUE(installer.click("Install"));
  ASSERT_TRUE(installer.waitForText("Sample was successfully installed.", 60));
  const fs::path theme = fs::path(desktop().homeFolder()) / ".local/share/icons/hicolor";
  for (const char* size : {"16x16", "24x24", "32x32", "48x48"}) {
    const fs::path folder = theme / size / "apps";
    ASSERT_TRUE(fs::exists(folder) && !fs::is_empty(folder)) << size;
    EXPECT_EQ(runCommand({"identify", "-format", "%wx%h %m", fs::directory_iterator(folder)->path()}).output,
              std::string(size) + " PNG");
  }
  EXPECT_FALSE(fs::exists(theme / "64x64")) << "it is not blown up";
}

// The clock of an X server counts milliseconds; the first click is the one on "Install".
TEST_F(InstallFlow, TheProductIsStartedInTheWakeOfTheLastClick) {
  InstallerDriver installer(desktop(), {"-sourcePath", product()});
  ASSERT_TRUE(installer.click("Install"));
  ASSERT_TRUE(installer.waitForText("Sample was successfully installed.", 60));
  ASSERT_TRUE(startedVersion("2.0"));
  const std::string id = startedWith("DESKTOP_STARTUP_ID");
  ASSERT_TRUE(id.starts_with("HalvornInstaller/")) << id;
  const std::string time = id.substr(id.find("_TIME") + 5);
  EXPECT_TRUE(!time.empty() && time.find_first_not_of("0123456789") == std::string::npos) << id;
  EXPECT_EQ(startedWith("XDG_ACTIVATION_TOKEN"), id);
}

TEST_F(InstallFlow, DirectInvocationKeepsTheLogOnStandardError) {
  // Inside the product the installer needs no arguments.
  const fs::path inside = fs::path(product()) / "Contents/Resources/HalvornInstaller.app";
  fs::copy(fs::path(builtInstaller()).parent_path().parent_path().parent_path(), inside,
           fs::copy_options::recursive);
  InstallerDriver installer(desktop(), {}, {.program = inside / "Contents/Linux/HalvornInstaller"});
  ASSERT_TRUE(installer.click("Install"));
  ASSERT_TRUE(installer.waitForText("Sample was successfully installed.", 60));
  EXPECT_TRUE(startedVersion("2.0"));
  ASSERT_TRUE(installer.click("OK"));
  EXPECT_EQ(installer.process().waitForEnd(20), 0);
  const std::string program =
      "<image>/Sample.app/Contents/Resources/HalvornInstaller.app/Contents/Linux/HalvornInstaller";
  const Lines expected =
      Lines{"direct invocation", "arguments: (\"" + program + "\")",
            "shortened path = <image>/Sample.app/Contents", "shortened path = <image>/Sample.app"} +
      Lines(kPlainStart.begin() + 1, kPlainStart.end() - 1) +
      Lines{updatedLine({{"", "\"" + program + "\""}})} + kInstallClicked + installLog();
  EXPECT_EQ(whole(logLines(installer.process().output())), expected);
  EXPECT_FALSE(fs::exists(desktop().homeFolder() + "/Library/Logs/HalvornInstaller.log"));
}

TEST_F(InstallFlow, ARunningCopyIsQuitAndTheOldOneGoesToTheTrash) {
  const fs::path old = makeSampleProduct(applications(), {.version = "1.0"});
  ChildProcess running({old / "Contents/Linux/Sample"},
                       {.environment = desktop().environmentWith(reportEntry())});
  ASSERT_TRUE(startedVersion("1.0"));
  // A bystander of another signature stays alive.
  const fs::path other = makeSampleProduct(image(), {.name = "Other", .version = "7", .signature = "OTHR"});
  ChildProcess bystander({other / "Contents/Linux/Other"},
                         {.environment = desktop().environmentWith(reportEntry())});
  ASSERT_TRUE(startedVersion("7"));

  InstallerDriver installer(desktop(), {"-sourcePath", product()});
  ASSERT_TRUE(installer.click("Install"));
  ASSERT_TRUE(installer.waitForText("Sample was successfully installed.", 60));
  EXPECT_TRUE(startedVersion("2.0"));
  EXPECT_FALSE(running.isRunning());
  EXPECT_TRUE(bystander.isRunning());
  EXPECT_EQ(wholeLog(), kPlainStart + kInstallClicked + kQuitObeyed + installLog());
  EXPECT_EQ(versionOfBundle(destination()), "2.0");
  EXPECT_EQ(versionOfBundle(desktop().homeFolder() + "/.local/share/Trash/files/Sample.app"), "1.0");
}

TEST_F(InstallFlow, AProductThatKeepsComingBackCancelsTheInstallationWithTheMessage) {
  const fs::path old = makeSampleProduct(applications(), {.version = "1.0"});
  Respawner respawner(*this, old / "Contents/Linux/Sample");
  ASSERT_TRUE(startedVersion("1.0"));

  InstallerDriver installer(desktop(), {"-sourcePath", product()});
  EXPECT_EQ(busyRoles(installer), Lines{});
  ASSERT_TRUE(installer.click("Install"));
  EXPECT_TRUE(eventually([&] { return busyRoles(installer) == Lines{"frame", "progress bar"}; }, 20));
  EXPECT_TRUE(eventually([&] { return logHas("Sample refused to quit; installation cancelled"); }, 90));
  EXPECT_TRUE(eventually([&] { return busyRoles(installer).empty(); }, 20));
  EXPECT_TRUE(installer.waitForButton("Install", 20)) << "enabled again";
  EXPECT_TRUE(installer.waitForButton("Cancel", 20));
  EXPECT_EQ(wholeLog(), kPlainStart + kInstallClicked + kQuitObeyed + kStillRunning +
                            Lines{"Sample did not quit; will retry"} + kQuitObeyed + kStillRunning +
                            kQuitObeyed + kStillRunning + kQuitObeyed + kStillRunning + kStillRunning +
                            Lines{"Sample refused to quit; installation cancelled"});
  EXPECT_EQ(versionOfBundle(destination()), "1.0") << "nothing was touched";
}

TEST_F(InstallFlow, AFailureLeavesBothButtonsAndASecondClickSucceeds) {
  InstallerDriver installer(desktop(), {"-sourcePath", product()});
  ASSERT_TRUE(installer.waitForButton("Install", 30));
  const fs::path away = image() / "away";
  fs::rename(product(), away);
  ASSERT_TRUE(installer.click("Install"));
  ASSERT_TRUE(eventually([&] { return logHas("ERROR -- Could not copy myself to " + destination()); }, 60));
  ASSERT_TRUE(installer.waitForButton("Install", 20));
  EXPECT_TRUE(installer.waitForButton("Cancel", 20));
  EXPECT_TRUE(eventually([&] { return installer.showing("Install")->has("focused"); }))
      << "the keyboard is where the next step is";
  fs::rename(away, product());
  installer.key("Return");
  EXPECT_TRUE(installer.waitForText("Sample was successfully installed.", 60));
  EXPECT_EQ(wholeLog(), (kPlainStart + kInstallClicked +
                         Lines{"CAUSE -- No such file or directory: <image>/Sample.app (look)",
                               "ERROR -- Could not copy myself to <home>/Applications/Sample.app"} +
                         kInstallClicked + installLog()));
}

TEST_F(InstallFlow, AProductForANewerSystemIsRefusedWithTheAlert) {
  fs::remove_all(product());
  makeSampleProduct(image(), {.minSystemVersion = "99.1"});
  InstallerDriver installer(desktop(), {"-sourcePath", product()});
  ASSERT_TRUE(installer.waitForButton("Visit Archive", 30));
  ASSERT_TRUE(installer.click("Quit"));
  EXPECT_EQ(installer.process().waitForEnd(20), 0);
  EXPECT_FALSE(fs::exists(destination()));
  EXPECT_EQ(wholeLog(), kPlainStart);
}

TEST_F(InstallFlow, ABundleForAnotherSystemRaisesTheAlertAndInstallsWhenOverridden) {
  fs::remove_all(product());
  const fs::path program = image() / "foreign";
  std::ofstream(program, std::ios::binary) << "\xCF\xFA\xED\xFE\x07" << std::string(64, '\0');
  fs::permissions(program, fs::perms::owner_all);
  makeSampleProduct(image(), {.minSystemVersion = "10.13", .program = program, .programFolder = "MacOS"});
  {
    InstallerDriver installer(desktop(), {"-sourcePath", product()});
    ASSERT_TRUE(installer.click("Quit", 30));
    EXPECT_EQ(installer.process().waitForEnd(20), 0);
    EXPECT_FALSE(fs::exists(destination()));
  }
  InstallerDriver installer(desktop(), {"-sourcePath", product(), "-minSystemVersion", "1.0"});
  ASSERT_TRUE(installer.click("Install"));
  ASSERT_TRUE(installer.waitForText("Sample was successfully installed.", 60));
  Lines launches = {"launched immediately: 0"};
  for (int i = 0; i < 10; ++i) launches = launches + Lines{"retry opening", "launched: 0"};
  const Lines copied = installLog();
  // The first program wrote to the same file.
  EXPECT_EQ(wholeLog(), kPlainStart +
                            startLog({"-sourcePath", "<image>/Sample.app", "-minSystemVersion", "1.0"},
                                     {{"minSystemVersion", "\"1.0\""}}) +
                            kInstallClicked + Lines(copied.begin(), copied.end() - 1) + launches);
  EXPECT_EQ(versionOfBundle(destination()), "2.0");
}

TEST_F(InstallFlow, ASetUpErrorIsTheFinalMessage) {
  fs::remove_all(product());
  makeSampleProduct(image(), {.signature = std::nullopt});
  InstallerDriver installer(desktop(), {"-sourcePath", product()});
  ASSERT_TRUE(installer.waitForText("missing product signature", 30));
  ASSERT_TRUE(installer.click("OK"));
  EXPECT_EQ(installer.process().waitForEnd(20), 0);
  EXPECT_EQ(wholeLog(),
            Lines(kPlainStart.begin(), kPlainStart.end() - 1) + Lines{"missing product signature"});
}

TEST_F(InstallFlow, TheKeyboardAloneInstalls) {
  InstallerDriver installer(desktop(), {"-sourcePath", product()});
  ASSERT_TRUE(installer.waitForButton("Install", 30));
  installer.key("Return");
  ASSERT_TRUE(installer.waitForText("Sample was successfully installed.", 60));
  ASSERT_TRUE(startedVersion("2.0"));
  // The product's window may come up after the installer's came forward: what a person's window switcher
  // does, again if the keyboard was taken away in between.
  const auto isFront = [&] {
    const auto front =
        runCommand({"xdotool", "getactivewindow", "getwindowname"}, {.environment = desktop().environment()});
    return front.output == "Install Sample\n";
  };
  EXPECT_TRUE(eventually(
      [&] {
        static_cast<void>(
            runCommand({"xdotool", "search", "--onlyvisible", "--name", "^Install Sample$", "windowactivate"},
                       {.environment = desktop().environment()}));
        if (eventually(isFront, 2)) installer.key("Return");
        return eventually([&] { return !installer.process().isRunning(); }, 3);
      },
      20));
  EXPECT_EQ(installer.process().waitForEnd(1), 0);
  EXPECT_EQ(wholeLog(), kPlainStart + kInstallClicked + installLog());
}

TEST_F(InstallFlow, HostileNamesAreInstalledAndEachEventIsOneLine) {
  fs::remove_all(product());
  const std::string name = "Sa\nm \"p\" %@ \xE4 '$(x)'";
  const fs::path bundle = makeSampleProduct(image(), {.name = "Sample"});
  const fs::path hostile = image() / (name + ".app");
  fs::rename(bundle, hostile);
  InstallerDriver installer(desktop(), {"-sourcePath", hostile, "-productName", "Sample"});
  ASSERT_TRUE(installer.click("Install"));
  ASSERT_TRUE(installer.waitForText("Sample was successfully installed.", 60));
  EXPECT_EQ(versionOfBundle(applications() / (name + ".app")), "2.0");
  const std::string shown = "Sa\\nm \"p\" %@ \\xE4 '$(x)'.app";
  const std::string to = "<home>/Applications/" + shown;
  // The desktop's files have no way to say such a name.
  const Lines installed = {"successfully copied", "launching " + to, "registered app: -50",
                           "launched immediately: 1"};
  EXPECT_EQ(wholeLog(),
            startLog({"-sourcePath", "<image>/" + shown, "-productName", "Sample"},
                     {{"sourcePath", "\"<image>/" + shown + "\""}, {"destinationPath", "\"" + to + "\""}}) +
                kInstallClicked + installed);
  EXPECT_EQ(installerLog().size(), rawLogLineCount());
}

TEST_F(InstallFlow, ItQuitsByItselfAfterTheDelay) {
  InstallerDriver installer(desktop(), {"-sourcePath", product(), "-completionQuit", "0.5"});
  ASSERT_TRUE(installer.click("Install"));
  EXPECT_EQ(installer.process().waitForEnd(60), 0);
  EXPECT_EQ(wholeLog(), startLog({"-sourcePath", "<image>/Sample.app", "-completionQuit", "0.5"},
                                 {{"completionQuit", "\"0.5\""}}) +
                            kInstallClicked + installLog() + Lines{"quit delay: 0.5"});
  EXPECT_EQ(versionOfBundle(destination()), "2.0");
}

// The toolkit sets the person's locale for the whole program.
class InstallFlowInALocale : public InstallFlow, public testing::WithParamInterface<const char*> {};

TEST_P(InstallFlowInALocale, TheWholeLogIsTheSameAsEverywhere) {
  useLocale(GetParam());
  if (IsSkipped()) return;
  const fs::path old = makeSampleProduct(applications(), {.version = "1.0"});
  ChildProcess running({old / "Contents/Linux/Sample"},
                       {.environment = desktop().environmentWith(reportEntry())});
  ASSERT_TRUE(startedVersion("1.0"));
  InstallerDriver installer(desktop(), {"-sourcePath", product(), "-completionQuit", "1.5"});
  ASSERT_TRUE(installer.click("Install"));
  EXPECT_EQ(installer.process().waitForEnd(60), 0);
  EXPECT_EQ(wholeLog(), startLog({"-sourcePath", "<image>/Sample.app", "-completionQuit", "1.5"},
                                 {{"completionQuit", "\"1.5\""}}) +
                            kInstallClicked + kQuitObeyed + installLog() + Lines{"quit delay: 1.5"});
}

INSTANTIATE_TEST_SUITE_P(Locales, InstallFlowInALocale, testing::Values("de_DE", "ar_EG", "fa_IR"),
                         [](const auto& locale) { return std::string(locale.param); });

TEST_F(InstallFlow, AWrapperBringsItsItemsAlong) {
  const fs::path suite = image() / "Sample Suite";
  fs::create_directories(suite);
  fs::rename(product(), suite / "Sample.app");
  std::ofstream(suite / "Manual.txt") << "read me\n";
  InstallerDriver installer(desktop(), {"-sourcePath", suite / "Sample.app", "-wrapperPath", suite});
  ASSERT_TRUE(installer.click("Install"));
  ASSERT_TRUE(installer.waitForText("Sample was successfully installed.", 60));
  EXPECT_TRUE(fs::exists(applications() / "Sample Suite/Manual.txt"));
  EXPECT_EQ(versionOfBundle(applications() / "Sample Suite/Sample.app"), "2.0");
  const std::string from = "<image>/Sample Suite/Sample.app",
                    to = "<home>/Applications/Sample Suite/Sample.app";
  const Lines start = startLog({"-sourcePath", from, "-wrapperPath", "<image>/Sample Suite"},
                               {{"sourcePath", "\"" + from + "\""},
                                {"destinationPath", "\"" + to + "\""},
                                {"wrapperPath", "\"<image>/Sample Suite\""}});
  EXPECT_EQ(wholeLog(), Lines(start.begin(), start.end() - 1) + Lines{"wrapper = <image>/Sample Suite"} +
                            Lines{start.back()} + kInstallClicked + installLog(to));
}

TEST_F(InstallFlow, BundlesOfTheDistributionAreInstalledReplacedAndLaunched) {
  int tried = 0;
  for (const char* name : {"EdenMath", "AClock"}) {
    const fs::path bundle = fs::path("/usr/lib/GNUstep/Applications") / (std::string(name) + ".app");
    if (!fs::exists(bundle)) continue;
    ++tried;
    for (const char* round : {"installed", "replaced"}) {
      SCOPED_TRACE(std::string(name) + " " + round);
      fs::remove(desktop().homeFolder() + "/Library/Logs/HalvornInstaller.log");
      InstallerDriver installer(desktop(),
                                {"-sourcePath", bundle, "-productCode", "GNUS", "-completionQuit", "0.2"});
      ASSERT_TRUE(installer.click("Install"));
      EXPECT_EQ(installer.process().waitForEnd(90), 0);
      const fs::path installed = applications() / bundle.filename();
      const std::string to = "<home>/Applications/" + bundle.filename().string();
      EXPECT_EQ(wholeLog(),
                startLog({"-sourcePath", bundle, "-productCode", "GNUS", "-completionQuit", "0.2"},
                         {{"sourcePath", "\"" + bundle.string() + "\""},
                          {"destinationPath", "\"" + to + "\""},
                          {"productName", "\"" + std::string(name) + "\""},
                          {"productCode", "(\"GNUS\")"},
                          {"quitCode", "(\"GNUS\")"},
                          {"completionQuit", "\"0.2\""}}) +
                    kInstallClicked + installLog(to) + Lines{"quit delay: 0.2"});
      EXPECT_TRUE(sameTree(bundle, installed));
      EXPECT_TRUE(endProgramsBelow(installed)) << "the launched program runs";
    }
    EXPECT_TRUE(
        fs::exists(desktop().homeFolder() + "/.local/share/Trash/files/" + bundle.filename().string()));
  }
  if (tried == 0) GTEST_SKIP() << "neither edenmath.app nor aclock.app is installed";
  EXPECT_EQ(tried, 2);
}

}  // namespace
}  // namespace halvorn
