// Whole installations on a Wayland desktop, clicked with its own pointer and keys.
#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <fstream>

#include "tests/flows/FlowFixture.h"
#include "tests/flows/WholeLog.h"

namespace halvorn {
namespace {

namespace fs = std::filesystem;

class WaylandFlow : public FlowFixture {
 protected:
  [[nodiscard]] DesktopParts parts() const override {
    return {.compositor = Compositor::Sway, .accessibility = true};
  }
  // Of the window that has the focus: its program's id, as the compositor knows it.
  [[nodiscard]] std::string focusedApplication() {
    const auto tree = runCommand({"swaymsg", "-s", desktop().swaySocket(), "-r", "-t", "get_tree"}).output;
    const std::size_t focused = tree.find("\"focused\": true");
    const std::size_t id = tree.find("\"app_id\": \"", focused);
    if (focused == std::string::npos || id == std::string::npos) return "";
    const std::size_t start = id + std::string("\"app_id\": \"").size();
    return tree.substr(start, tree.find('"', start) - start);
  }
};

TEST_F(WaylandFlow, FromTheReadMeToTheFinalMessageWithTheWholeLog) {
  installFromTheReadMe([this](InstallerDriver&) {
    EXPECT_TRUE(eventually([&] { return focusedApplication() == "Sample"; })) << focusedApplication();
    EXPECT_EQ(windowClassOfProductsEntry(), focusedApplication()) << "by that shells find its picture";
    EXPECT_NE(startedWith("XDG_ACTIVATION_TOKEN"), "") << "the compositor's leave to come to the front";
  });
}

// There a window tells no picture of its own: shells take the one of the entry that is called like the program's id.
TEST_F(WaylandFlow, TheInstallersIdIsTheNameOfItsEntry) {
  const fs::path entries = KT_SOURCE_DIR "/packaging/linux/debian";
  InstallerDriver installer(desktop(), {"-sourcePath", product()});
  ASSERT_TRUE(installer.waitForButton("Install", kTestPatience));
  EXPECT_TRUE(eventually([&] {
    const std::string id = focusedApplication();
    return !id.empty() && fs::exists(entries / (id + ".desktop"));
  })) << focusedApplication();
}

TEST_F(WaylandFlow, ARunningCopyIsQuitAndTheKeyboardAloneSuffices) {
  const fs::path old = makeSampleProduct(applications(), {.version = "1.0"});
  ChildProcess running({old / "Contents/Linux/Sample"},
                       {.environment = desktop().environmentWith(reportEntry())});
  ASSERT_TRUE(startedVersion("1.0"));
  ASSERT_TRUE(eventually([&] { return focusedApplication() == "Sample"; })) << "its window is the older one";
  InstallerDriver installer(desktop(), {"-sourcePath", product()});
  ASSERT_TRUE(installer.waitForButton("Install", kTestPatience));
  ASSERT_TRUE(eventually([&] { return focusedApplication() == "example.halvorn.installer"; }))
      << focusedApplication();
  installer.key("Return");
  ASSERT_TRUE(installer.waitForText("Sample was successfully installed.", 60));
  EXPECT_TRUE(startedVersion("2.0"));
  EXPECT_FALSE(running.isRunning());
  EXPECT_EQ(wholeLog(), kPlainStart + kInstallClicked + kQuitObeyed + installLog());
}

// There a program repeats held keys itself; whoever keeps the key down on the read-me has agreed to nothing else.
TEST_F(WaylandFlow, AReturnThatIsHeldTurnsThePageAndInstallsNothing) {
  constexpr double kLongerThanTheFirstRepeatTakes = 1.5;
  const std::string readMe = makeReadMe(image());
  InstallerDriver installer(desktop(), {"-sourcePath", product(), "-readMePath", readMe});
  ASSERT_TRUE(installer.waitForButton("Continue", kTestPatience));
  ASSERT_TRUE(eventually([&] { return focusedApplication() == "example.halvorn.installer"; }))
      << focusedApplication();
  auto held = std::make_unique<ChildProcess>(
      std::vector<std::string>{"wtype", "-s", "400", "-P", "Return", "-s", "60000"},
      ChildOptions{.environment = desktop().environment()});
  ASSERT_TRUE(installer.waitForButton("Install", kTestPatience));
  EXPECT_FALSE(eventually([&] { return logHas(kInstallClicked.front()); }, kLongerThanTheFirstRepeatTakes));
  held.reset();
  installer.key("Return");
  ASSERT_TRUE(installer.waitForText("Sample was successfully installed.", 60));
  EXPECT_EQ(countOf(kInstallClicked.front()), 1);
}

TEST_F(WaylandFlow, WhatTheHelpButtonOpensHasTheCompositorsLeaveToComeToTheFront) {
  const fs::path programs = image() / "programs";
  const fs::path told = image() / "told";
  fs::create_directories(programs);
  const std::string opener = programs / "xdg-open";
  std::ofstream(opener) << "#!/bin/sh\necho \"$1 by '$XDG_ACTIVATION_TOKEN'\" >'" << told.string() << "'\n";
  fs::permissions(opener, fs::perms::owner_all);
  const std::string guide = makeGuide(image());
  InstallerDriver installer(desktop(), {"-sourcePath", product(), "-documentationPath", guide},
                            {.environment = {"PATH=" + programs.string() + ":/usr/bin:/bin"}});
  ASSERT_TRUE(installer.click("Help"));
  const auto text = [&] {
    std::ifstream file(told);
    std::string line;
    std::getline(file, line);
    return line;
  };
  ASSERT_TRUE(eventually([&] { return text().ends_with("'"); })) << text();
  EXPECT_TRUE(text().starts_with(guide + " by '")) << text();
  EXPECT_FALSE(text().ends_with("by ''")) << text();
}

// The same name for its display, in another folder; no number of a session to tell them apart.
TEST_F(WaylandFlow, ACopyOnTheOtherDesktopIsLeftAlone) {
  Desktop neighbour({.bus = false, .compositor = Compositor::Sway});
  ASSERT_EQ(neighbour.waylandDisplay(), desktop().waylandDisplay());
  const fs::path old = makeSampleProduct(applications(), {.version = "1.0"});
  ChildProcess there({old / "Contents/Linux/Sample"},
                     {.environment = neighbour.environmentWith(reportEntry())});
  ASSERT_TRUE(startedVersion("1.0"));
  InstallerDriver installer(desktop(), {"-sourcePath", product()});
  ASSERT_TRUE(installer.click("Install"));
  ASSERT_TRUE(installer.waitForText("Sample was successfully installed.", 60));
  EXPECT_EQ(wholeLog(), kPlainStart + kInstallClicked + installLog());
  EXPECT_TRUE(there.isRunning());
}

// Neither a compositor nor an X server; and one of each that has gone.
TEST_F(WaylandFlow, WithoutADisplayTheLogSaysSoAndTheStatusToo) {
  const std::string home = desktop().homeFolder();
  const std::vector<std::string> common = {"HOME=" + home, "PATH=/usr/bin:/bin", "LANG=C.UTF-8",
                                           "HALVORN_AS_ROOT=container"};
  for (const std::vector<std::string>& gone :
       {std::vector<std::string>{},
        std::vector<std::string>{"WAYLAND_DISPLAY=wayland-4711", "XDG_RUNTIME_DIR=" + home},
        std::vector<std::string>{"DISPLAY=:4711"}}) {
    std::vector<std::string> environment = common;
    environment.insert(environment.end(), gone.begin(), gone.end());
    const auto result =
        runCommand({builtInstaller(), "-sourcePath", product()}, {.environment = environment});
    EXPECT_EQ(result.status, 69) << result.output;
    const Lines said = logLines(result.output);
    ASSERT_FALSE(said.empty()) << result.output;
    EXPECT_TRUE(said.back().starts_with("ERROR -- Without a window: ")) << said.back();
  }
}

class KWinFlow : public FlowFixture {
 protected:
  [[nodiscard]] DesktopParts parts() const override {
    return {.compositor = Compositor::KWin, .accessibility = true};
  }
};

TEST_F(KWinFlow, FromTheReadMeToTheFinalMessageWithTheWholeLog) {
  installFromTheReadMe([](InstallerDriver&) {});
}

class GnomeFlow : public FlowFixture {
 protected:
  [[nodiscard]] DesktopParts parts() const override {
    return {.compositor = Compositor::Gnome, .accessibility = true};
  }
  [[nodiscard]] Lines linesOfDesktop() const override {
    return {
        "This desktop tells nothing of its windows: programs are found in the process table and asked to end "
        "by a "
        "signal, and which one is in front is not known"};
  }
  // The program whose window has the keyboard, as the shell knows it: the name of its desktop entry.
  [[nodiscard]] std::string focusedApplication() {
    const std::string told = desktop().evaluated(
        "global.display.focus_window ? 'of ' + global.display.focus_window.get_wm_class() + '.' : ''");
    const std::size_t start = told.find("of ");
    return start == std::string::npos ? "" : told.substr(start + 3, told.rfind('.') - start - 3);
  }
};

TEST_F(GnomeFlow, FromTheReadMeToTheFinalMessageWithTheWholeLog) {
  installFromTheReadMe([this](InstallerDriver&) {
    EXPECT_TRUE(eventually([&] { return focusedApplication() == "Sample"; })) << focusedApplication();
    EXPECT_EQ(windowClassOfProductsEntry(), focusedApplication()) << "by that shells find its picture";
    EXPECT_NE(startedWith("XDG_ACTIVATION_TOKEN"), "") << "the compositor's leave to come to the front";
  });
}

// No window is told of there, so it is asked by a signal.
TEST_F(GnomeFlow, ARunningCopyIsQuitAndTheKeyboardAloneSuffices) {
  const fs::path old = makeSampleProduct(applications(), {.version = "1.0"});
  ChildProcess running({old / "Contents/Linux/Sample"},
                       {.environment = desktop().environmentWith(reportEntry())});
  ASSERT_TRUE(startedVersion("1.0"));
  ASSERT_TRUE(eventually([&] { return focusedApplication() == "Sample"; })) << "its window is the older one";
  InstallerDriver installer(desktop(), {"-sourcePath", product()});
  ASSERT_TRUE(installer.waitForButton("Install", kTestPatience));
  ASSERT_TRUE(eventually([&] { return focusedApplication() == "example.halvorn.installer"; }))
      << focusedApplication();
  installer.key("Return");
  ASSERT_TRUE(installer.waitForText("Sample was successfully installed.", 60));
  EXPECT_TRUE(startedVersion("2.0"));
  EXPECT_FALSE(running.isRunning());
  EXPECT_EQ(wholeLog(), kPlainStart + linesOfDesktop() + kInstallClicked + kQuitObeyed + installLog());
}

TEST_F(KWinFlow, ARunningCopyIsQuitAndTheKeyboardAloneSuffices) {
  const fs::path old = makeSampleProduct(applications(), {.version = "1.0"});
  ChildProcess running({old / "Contents/Linux/Sample"},
                       {.environment = desktop().environmentWith(reportEntry())});
  ASSERT_TRUE(startedVersion("1.0"));
  InstallerDriver installer(desktop(), {"-sourcePath", product()});
  ASSERT_TRUE(installer.waitForButton("Install", kTestPatience));
  ASSERT_TRUE(eventually([&] {
    const auto controls = installer.controls();
    return std::any_of(controls.begin(), controls.end(),
                       [](const Control& each) { return each.has("active"); });
  })) << "the window has the keyboard";
  installer.key("Return");
  ASSERT_TRUE(installer.waitForText("Sample was successfully installed.", 60));
  EXPECT_TRUE(startedVersion("2.0"));
  EXPECT_FALSE(running.isRunning());
  EXPECT_EQ(wholeLog(), kPlainStart + kInstallClicked + kQuitObeyed + installLog());
}

// The copy that runs is an X program, a guest of the same session.
class GuestFlow : public FlowFixture, public testing::WithParamInterface<Compositor> {
 protected:
  [[nodiscard]] DesktopParts parts() const override {
    return {.compositor = GetParam(), .xClients = true, .accessibility = true};
  }
};
INSTANTIATE_TEST_SUITE_P(Wayland, GuestFlow,
                         testing::Values(Compositor::Sway, Compositor::KWin, Compositor::Gnome),
                         [](const auto& parameters) { return nameOf(parameters.param); });

TEST_P(GuestFlow, ARunningCopyThatIsAnXProgramIsQuit) {
  const fs::path old = makeSampleProduct(applications(), {.version = "1.0"});
  std::vector<std::string> asGuest = reportEntry();
  asGuest.emplace_back("QT_QPA_PLATFORM=xcb");
  ChildProcess running({old / "Contents/Linux/Sample"}, {.environment = desktop().environmentWith(asGuest)});
  ASSERT_TRUE(startedVersion("1.0"));
  const auto isShown = [&] {
    return runCommand({"xdotool", "search", "--onlyvisible", "--name", "^Sample 1.0$"},
                      {.environment = desktop().environment()})
               .status == 0;
  };
  ASSERT_TRUE(eventually(isShown));
  InstallerDriver installer(desktop(), {"-sourcePath", product()});
  ASSERT_TRUE(installer.click("Install"));
  ASSERT_TRUE(installer.waitForText("Sample was successfully installed.", 60));
  EXPECT_TRUE(startedVersion("2.0"));
  EXPECT_FALSE(running.isRunning());
  EXPECT_TRUE(logHas("Quitting 'SMPL': Sample")) << testing::PrintToString(wholeLog());
}

}  // namespace
}  // namespace halvorn
