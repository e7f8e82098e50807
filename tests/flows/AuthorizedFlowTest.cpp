// The road of an installation that needs the administrator's rights: the real window, a real policy daemon,
// and a person who has none of those rights.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "tests/support/Desktop.h"
#include "tests/support/InstallerDriver.h"
#include "tests/support/PersonsShoes.h"
#include "tests/support/SampleProduct.h"
#include "tests/support/TestFiles.h"

namespace halvorn {
namespace {

namespace fs = std::filesystem;
using Lines = std::vector<std::string>;

constexpr double kPatience = 60;

class AuthorizedFlow : public testing::Test {
 protected:
  void SetUp() override {
    if (const auto missing = PolkitWorld::missing()) GTEST_SKIP() << *missing;
    if (const auto missing = Desktop::missing({.accessibility = true})) GTEST_SKIP() << *missing;
    for (const char* program : {"xdotool", "import", "identify", "gio", "wmctrl"}) {
      if (!programExists(program)) GTEST_SKIP() << program << " is not installed";
    }
    if (fs::exists("/Applications")) GTEST_SKIP() << "this machine has a folder /Applications";
    world_ = std::make_unique<PolkitWorld>(parts());
    // Where the person can read it, wherever the build folder lies.
    fs::copy(fs::path(builtInstaller()).parent_path().parent_path().parent_path(), bundle(),
             fs::copy_options::recursive);
    for (const char* program : {"accessible_probe", "kt_polkit_agent", "kt_start_report"}) {
      fs::copy_file(fs::path(KT_BINARY_DIR "/tests") / program, at(program));
    }
    makeSampleProduct(at("NAS"), {.program = at("kt_start_report"), .hasIcon = false});
  }

  [[nodiscard]] virtual PolkitWorldParts parts() const { return {}; }
  [[nodiscard]] std::string at(const std::string& name) const { return world_->scratchFolder() + "/" + name; }
  [[nodiscard]] std::string bundle() const { return at("HalvornInstaller.app"); }
  [[nodiscard]] std::string product() const { return at("NAS/Sample.app"); }
  [[nodiscard]] std::string home() const { return world_->homeFolder(); }
  [[nodiscard]] std::string destination() const { return "/opt/Sample.app"; }
  [[nodiscard]] std::string logText() const {
    return contentsOf(home() + "/Library/Logs/HalvornInstaller.log");
  }
  // What the installer said from "Install" on.
  [[nodiscard]] Lines logFromInstall() const {
    const Lines all = logLines(logText());
    return {std::find(all.begin(), all.end(), "Install"), all.end()};
  }
  [[nodiscard]] bool logHas(const std::string& line) const {
    const Lines all = logLines(logText());
    return std::find(all.begin(), all.end(), line) != all.end();
  }

  // A desktop of the person's, whose window manager leaves the Alt key alone.
  struct Session {
    explicit Session(const std::string& folder)
        : desktop({.windowManager = false, .accessibility = true}),
          windowManager(startedManager(desktop, folder)) {}
    static std::unique_ptr<ChildProcess> startedManager(Desktop& onDesktop, const std::string& folder) {
      const std::string configuration = folder + "/openbox.xml";
      std::ofstream(configuration) << "<openbox_config xmlns=\"http://openbox.org/3.4/rc\">"
                                      "<keyboard/><mouse/></openbox_config>\n";
      auto manager = std::make_unique<ChildProcess>(
          Lines{"openbox", "--sm-disable", "--config-file", configuration, "--startup", "echo ready"},
          ChildOptions{.environment = onDesktop.environment()});
      if (!manager->waitForOutput("ready\n", kPatience))
        throw std::runtime_error("openbox: " + manager->output());
      return manager;
    }
    Desktop desktop;
    std::unique_ptr<ChildProcess> windowManager;
  };

  [[nodiscard]] InstallerDriver installer(Session& session, const std::vector<std::string>& more = {}) const {
    std::vector<std::string> arguments{"-sourcePath", product()};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return InstallerDriver(session.desktop, arguments,
                           {.program = bundle() + "/Contents/Linux/HalvornInstaller",
                            .environment = {"HOME=" + home()},
                            .accessibleProbe = at("accessible_probe")});
  }

  [[nodiscard]] std::unique_ptr<ChildProcess> agentFor(InstallerDriver& driver,
                                                       const std::string& mode) const {
    auto agent =
        std::make_unique<ChildProcess>(Lines{at("kt_polkit_agent"), std::to_string(driver.installer()), mode},
                                       ChildOptions{.environment = world_->personsEnvironment()});
    EXPECT_TRUE(agent->waitForOutput("registered", kPatience)) << agent->output();
    return agent;
  }

  // Whether the wheel turns: it is drawn then, and else its place is of one color.
  [[nodiscard]] static bool progressIsShown(Session& session, const InstallerDriver& driver) {
    for (const Control& control : driver.controls()) {
      if (control.role != "progress bar") continue;
      const std::string place = std::to_string(control.width) + "x" + std::to_string(control.height) + "+" +
                                std::to_string(control.x) + "+" + std::to_string(control.y);
      const auto colors = runCommand(
          {"sh", "-c", "import -window root -crop " + place + " +repage png:- | identify -format %k -"},
          {.environment = session.desktop.environment()});
      return colors.status == 0 && colors.output != "1";
    }
    return false;
  }

  static void pressWithAlt(Session& session, const std::vector<std::string>& action) {
    const auto run = [&](std::vector<std::string> command) {
      command.insert(command.begin(), "xdotool");
      const auto result = runCommand(command, {.environment = session.desktop.environment()});
      EXPECT_EQ(result.status, 0) << result.output;
    };
    run({"keydown", "alt"});
    run(action);
  }
  static void releaseAlt(Session& session) {
    (void)runCommand({"xdotool", "keyup", "alt"}, {.environment = session.desktop.environment()});
  }

  static void closeWindow(Session& session) {
    const auto closed = runCommand(
        {"sh", "-c", "wmctrl -i -c $(xdotool search --onlyvisible --name '^Install Sample$' | head -n 1)"},
        {.environment = session.desktop.environment()});
    EXPECT_EQ(closed.status, 0) << closed.output;
  }
  // 0 closes the window; else the signal that the program is sent.
  static void leave(Session& session, InstallerDriver& driver, int way) {
    if (way == 0) return closeWindow(session);
    driver.process().sendSignal(way);
  }

  std::unique_ptr<PolkitWorld> world_;
};

TEST_F(AuthorizedFlow, TheRightPasswordInstallsForTheAdministratorAndLaunchesForThePerson) {
  const SampleProduct old{.version = "1.0", .program = at("kt_start_report"), .hasIcon = false};
  makeSampleProduct("/opt", old);
  inThePersonsShoes(*world_, [this] {
    Session session(home());
    InstallerDriver driver = installer(session);
    const auto agent = agentFor(driver, "wait-right");
    ASSERT_TRUE(driver.click("Install"));
    ASSERT_TRUE(agent->waitForOutput("asked: org.freedesktop.policykit.exec", kPatience))
        << agent->output() << logText();
    EXPECT_TRUE(eventually([&] { return !progressIsShown(session, driver); }, kPatience))
        << "turns beside the dialog";
    EXPECT_EQ(versionOfBundle(destination()), "1.0") << "nothing is done before the answer";
    agent->writeInput("answer\n");
    EXPECT_TRUE(eventually([&] { return progressIsShown(session, driver); })) << "does not turn again";
    ASSERT_TRUE(driver.waitForText("Sample was successfully installed.", kPatience)) << logText();
    EXPECT_EQ(logFromInstall(), (Lines{
                                    "Install",
                                    "Cannot write to item " + destination(),
                                    "successfully copied",
                                    "launching " + destination(),
                                    "registered app: 0",
                                    "launched immediately: 1",
                                }))
        << logText();
    ASSERT_TRUE(driver.click("OK"));
    EXPECT_EQ(driver.process().waitForEnd(kPatience), 0);
  });
  EXPECT_EQ(versionOfBundle(destination()), "2.0");
  for (const auto& entry : fs::recursive_directory_iterator(destination())) {
    struct stat facts {};
    ASSERT_EQ(::lstat(entry.path().c_str(), &facts), 0);
    EXPECT_EQ(facts.st_uid, 0U) << entry.path();
    EXPECT_EQ(facts.st_gid, 0U) << entry.path();
    if (!S_ISLNK(facts.st_mode)) {
      EXPECT_EQ(facts.st_mode & 07022, 0U) << entry.path();
    }
  }
  EXPECT_EQ(versionOfBundle(home() + "/.local/share/Trash/files/Sample.app"), "1.0");
}

// What asks for the rights was unpacked to a folder of the person's, and is gone afterwards.
TEST_F(AuthorizedFlow, FromASingleFileTheRightPasswordInstallsForTheAdministrator) {
  if (!programExists("zstd")) GTEST_SKIP() << "zstd is not installed";
  const std::string file = at("Sample.run");
  // What is shipped has no symbols either, and packs in a fraction of the time.
  ASSERT_EQ(runCommand({"strip", bundle() + "/Contents/Linux/HalvornInstaller"}).status, 0);
  const auto made =
      runCommand({KT_HALVORN, "image", product(), "--installer", bundle(), "-o", file}, {}, 300);
  ASSERT_EQ(made.status, 0) << made.output;
  inThePersonsShoes(*world_, [&] {
    Session session(home());
    InstallerDriver driver(session.desktop, {},
                           {.program = file,
                            .environment = {"HOME=" + home()},
                            .accessibleProbe = at("accessible_probe"),
                            .isSingleFile = true});
    ASSERT_TRUE(driver.waitForButton("Install", kPatience)) << driver.process().output();
    const auto agent = agentFor(driver, "right");
    ASSERT_TRUE(driver.click("Install"));
    ASSERT_TRUE(driver.waitForText("Sample was successfully installed.", kPatience))
        << driver.process().output();
    EXPECT_TRUE(agent->waitForOutput("asked: org.freedesktop.policykit.exec", kPatience)) << agent->output();
    ASSERT_TRUE(driver.click("OK"));
    EXPECT_EQ(driver.process().waitForEnd(kPatience), 0);
    EXPECT_TRUE(fs::is_empty(home() + "/.cache/halvorn-installer-" + std::to_string(PolkitWorld::personId)));
  });
  struct stat facts {};
  ASSERT_EQ(::lstat(destination().c_str(), &facts), 0);
  EXPECT_EQ(facts.st_uid, 0U);
  EXPECT_EQ(runCommand({"diff", "-r", product(), destination()}).output, "");
}

// Where a package of the distribution's installed it, the question has words and a picture of its own.
class PackagedFlow : public AuthorizedFlow {
 protected:
  static constexpr char kAction[] = KT_SOURCE_DIR "/packaging/linux/debian/example.halvorn.installer.policy";
  PolkitWorldParts parts() const override { return {.action = kAction}; }
  // Where the action says that the tool lies.
  void installPackage() {
    const std::string action = contentsOf(kAction);
    const std::string key = "org.freedesktop.policykit.exec.path\">";
    const std::size_t start = action.find(key) + key.size();
    const std::string tool = action.substr(start, action.find('<', start) - start);
    const std::string suffix = "/HalvornInstaller.app/Contents/Resources/train";
    ASSERT_TRUE(tool.ends_with(suffix)) << tool;
    const fs::path folder = tool.substr(0, tool.size() - suffix.size());
    world_->layOver(folder.parent_path(), "programs");
    fs::create_directory(folder);
    fs::copy(bundle(), folder / "HalvornInstaller.app", fs::copy_options::recursive);
    program_ = folder / "HalvornInstaller.app/Contents/Linux/HalvornInstaller";
  }
  static std::string bundleOf(const std::string& program) {
    return fs::path(program).parent_path().parent_path().parent_path();
  }
  std::string program_;
};

TEST_F(PackagedFlow, TheQuestionNamesTheInstallerAndTheProductAndHasItsIcon) {
  installPackage();
  inThePersonsShoes(*world_, [&] {
    Session session(home());
    InstallerDriver driver(
        session.desktop, {"-sourcePath", product()},
        {.program = program_, .environment = {"HOME=" + home()}, .accessibleProbe = at("accessible_probe")});
    const auto agent = agentFor(driver, "right");
    ASSERT_TRUE(driver.click("Install"));
    ASSERT_TRUE(driver.waitForText("Sample was successfully installed.", kPatience)) << agent->output();
    const std::string asked =
        "icon: halvorn-installer\nasked: example.halvorn.installer.copy Authentication is required for "
        "Halvorn "
        "Installer to install an application, from where to where the command says: " +
        bundleOf(program_) + "/Contents/Resources/train " + product() + " " + destination() + "\n";
    EXPECT_TRUE(agent->waitForOutput(asked, kPatience)) << agent->output();
  });
  struct stat facts {};
  ASSERT_EQ(::lstat(destination().c_str(), &facts), 0);
  EXPECT_EQ(facts.st_uid, 0U);
}

// The product knows nothing of the road it came on: started by the installer or by its entry, it is the same.
TEST_F(AuthorizedFlow, TheProductStartsAsItDoesFromItsDesktopEntry) {
  inThePersonsShoes(*world_, [this] {
    Session session(home());
    const auto environment = session.desktop.environmentWith({"HOME=" + home()});
    const auto reports = [&] {
      std::vector<fs::path> found;
      std::error_code none;
      for (const auto& entry : fs::directory_iterator(home() + "/reports", none)) {
        if (entry.path().filename().string().starts_with("started-")) found.push_back(entry.path());
      }
      return found;
    };
    {
      InstallerDriver driver = installer(session);
      const auto agent = agentFor(driver, "right");
      ASSERT_TRUE(driver.click("Install"));
      ASSERT_TRUE(driver.waitForText("Sample was successfully installed.", kPatience)) << logText();
    }
    ASSERT_TRUE(eventually([&] { return reports().size() == 1; }, kPatience));
    const std::string byInstaller = contentsOf(reports().front());
    fs::remove(reports().front());

    fs::path entry;
    for (const auto& file : fs::directory_iterator(home() + "/.local/share/applications")) {
      if (file.path().extension() == ".desktop") entry = file.path();
    }
    ASSERT_FALSE(entry.empty());
    const auto launched =
        runCommand({"gio", "launch", entry}, {.environment = environment, .workingFolder = home()});
    ASSERT_EQ(launched.status, 0) << launched.output;
    ASSERT_TRUE(eventually([&] { return reports().size() == 1; }, kPatience));
    const std::string byEntry = contentsOf(reports().front());

    // Everything but the environment is the same.
    const auto split = [](const std::string& text, bool variables) {
      Lines lines;
      std::istringstream stream(text);
      for (std::string line; std::getline(stream, line);) {
        if (line.starts_with("variable ") == variables) lines.push_back(line);
      }
      return lines;
    };
    EXPECT_EQ(split(byInstaller, false), split(byEntry, false));
    EXPECT_EQ(split(byInstaller, false).front(), "user 64101 64101");
    // Nothing in it that the person's session does not have, but who launched the program and upon which click.
    const Lines variables = split(byEntry, true);
    for (const std::string& variable : split(byInstaller, true)) {
      if (variable.starts_with("variable HALVORN_LAUNCHED_BY=")) continue;
      if (variable.starts_with("variable DESKTOP_STARTUP_ID=HalvornInstaller/")) continue;
      if (variable.starts_with("variable XDG_ACTIVATION_TOKEN=HalvornInstaller/")) continue;
      EXPECT_NE(std::find(variables.begin(), variables.end(), variable), variables.end()) << variable;
    }
    EXPECT_EQ(byInstaller.find("PKEXEC"), std::string::npos);
    EXPECT_EQ(byInstaller.find("SUDO"), std::string::npos);
  });
}

TEST_F(AuthorizedFlow, ADismissedDialogIsSilentAndBothButtonsWorkAgain) {
  inThePersonsShoes(*world_, [this] {
    Session session(home());
    InstallerDriver driver = installer(session);
    const auto agent = agentFor(driver, "cancel");
    ASSERT_TRUE(driver.click("Install"));
    ASSERT_TRUE(eventually([&] { return logHas("User canceled authorization"); }, kPatience)) << logText();
    EXPECT_TRUE(driver.waitForButton("Install", kPatience));
    EXPECT_TRUE(driver.waitForButton("Cancel", kPatience));
    EXPECT_FALSE(progressIsShown(session, driver));
    EXPECT_EQ(logFromInstall(), (Lines{
                                    "Install",
                                    "Cannot write to folder /opt",
                                    "No administrator rights: the request was dismissed",
                                    "User canceled authorization",
                                }));
    for (const Control& control : driver.controls()) {
      EXPECT_EQ(control.text.find("failed"), std::string::npos) << control.text;
    }
  });
  EXPECT_FALSE(fs::exists(destination()));
}

TEST_F(AuthorizedFlow, LeavingWhileTheDialogIsOpenWithdrawsTheQuestion) {
  makeSampleProduct("/opt", {.version = "1.0", .program = at("kt_start_report"), .hasIcon = false});
  inThePersonsShoes(*world_, [this] {
    for (const int way : {0, SIGTERM}) {
      SCOPED_TRACE(way);
      fs::remove(home() + "/Library/Logs/HalvornInstaller.log");
      Session session(home());
      InstallerDriver driver = installer(session);
      const auto agent = agentFor(driver, "wait-right");
      ASSERT_TRUE(driver.click("Install"));
      ASSERT_TRUE(agent->waitForOutput("asked:", kPatience)) << agent->output() << logText();
      leave(session, driver, way);
      EXPECT_EQ(driver.process().waitForEnd(kPatience), 0);
      Lines expected = {"Install", "Cannot write to item " + destination()};
      if (way != 0) expected.push_back("The session ends: signal 15");
      for (const char* line :
           {"No administrator rights: the request was withdrawn", "User canceled authorization",
            "Left before anything was touched: nothing is installed"})
        expected.emplace_back(line);
      EXPECT_EQ(logFromInstall(), expected);
    }
  });
  EXPECT_EQ(versionOfBundle(destination()), "1.0");
  EXPECT_FALSE(fs::exists(home() + "/.local/share/Trash/files/Sample.app"));
}

TEST_F(AuthorizedFlow, LeavingWhileTheToolRunsLetsItFinish) {
  // Enough for the tool to be seen at work.
  const fs::path many = product() + "/Contents/Resources/many";
  fs::create_directories(many);
  for (int i = 0; i < 20'000; ++i) std::ofstream(many / std::to_string(i)) << i;
  for (const int way : {0, SIGTERM}) {
    SCOPED_TRACE(way);
    fs::remove_all(destination());
    fs::remove_all(home() + "/.local/share/Trash");
    makeSampleProduct("/opt", {.version = "1.0", .program = at("kt_start_report"), .hasIcon = false});
    inThePersonsShoes(*world_, [&] {
      fs::remove(home() + "/Library/Logs/HalvornInstaller.log");
      Session session(home());
      InstallerDriver driver = installer(session);
      const auto agent = agentFor(driver, "right");
      ASSERT_TRUE(driver.click("Install"));
      ASSERT_TRUE(eventually([&] { return versionOfBundle(destination()) != "1.0"; }, kPatience))
          << logText();
      leave(session, driver, way);
      EXPECT_FALSE(logHas("successfully copied")) << "the tool was too fast for this test";
      EXPECT_EQ(driver.process().waitForEnd(kPatience), 0);
      EXPECT_TRUE(logHas("successfully copied")) << logText();
      EXPECT_EQ(logHas("not launched: the session ends"), way != 0);
      EXPECT_EQ(logHas("launched immediately: 1"), way == 0);
    });
    EXPECT_EQ(runCommand({"diff", "-r", product(), destination()}).status, 0);
    EXPECT_EQ(versionOfBundle(home() + "/.local/share/Trash/files/Sample.app"), "1.0");
  }
}

TEST_F(AuthorizedFlow, ARefusalIsAFailureWithItsMessage) {
  inThePersonsShoes(*world_, [this] {
    Session session(home());
    InstallerDriver driver = installer(session);
    const auto agent = agentFor(driver, "wrong");
    ASSERT_TRUE(driver.click("Install"));
    const std::string error = "ERROR -- Could not copy myself to /Applications with authorization";
    ASSERT_TRUE(eventually([&] { return logHas(error); }, kPatience)) << logText();
    EXPECT_TRUE(driver.waitForButton("Install", kPatience));
    EXPECT_EQ(logFromInstall(),
              (Lines{
                  "Install",
                  "Cannot write to folder /opt",
                  "No administrator rights: not authenticated, the password was not accepted",
                  error,
              }));
  });
  EXPECT_FALSE(fs::exists(destination()));
}

TEST_F(AuthorizedFlow, AToolThatFailsIsAFailureAndItsOwnLinesAreInTheLog) {
  inThePersonsShoes(*world_, [this] {
    Session session(home());
    // Copied by the person, so that it can be taken away again.
    const std::string source = home() + "/Sample.app";
    fs::copy(product(), source, fs::copy_options::recursive);
    InstallerDriver driver = installer(session, {"-sourcePath", source});
    const auto agent = agentFor(driver, "right");
    ASSERT_TRUE(driver.waitForButton("Install", kPatience));
    fs::remove_all(source);
    ASSERT_TRUE(driver.click("Install"));
    const std::string error = "ERROR -- Could not copy myself to /Applications with authorization";
    ASSERT_TRUE(eventually([&] { return logHas(error); }, kPatience)) << logText();
    EXPECT_TRUE(driver.waitForButton("Install", kPatience));
    EXPECT_EQ(logFromInstall(), (Lines{
                                    "Install",
                                    "Cannot write to folder /opt",
                                    "The administrator's tool ended with status 2",
                                    "WEXITSTATUS",
                                    error,
                                }));
    const auto cause = logText().find("] CAUSE -- No such file or directory: " + source + " (look)\n");
    ASSERT_NE(cause, std::string::npos) << logText();
    EXPECT_NE(logText().find("] ERROR -- Could not copy myself to " + destination() + "\n", cause),
              std::string::npos);
  });
}

TEST_F(AuthorizedFlow, AMissingToolIsAFailureWithoutADialog) {
  fs::remove(bundle() + "/Contents/Resources/train");
  inThePersonsShoes(*world_, [this] {
    Session session(home());
    InstallerDriver driver = installer(session);
    const auto agent = agentFor(driver, "right");
    ASSERT_TRUE(driver.click("Install"));
    const std::string error = "ERROR -- Could not copy myself to /Applications with authorization";
    ASSERT_TRUE(eventually([&] { return logHas(error); }, kPatience)) << logText();
    EXPECT_EQ(logFromInstall(), (Lines{
                                    "Install",
                                    "Cannot write to folder /opt",
                                    "The installer has no tool for the administrator",
                                    "AuthorizationExecuteWithPrivileges failed ((null))",
                                    error,
                                }));
    EXPECT_FALSE(agent->waitForOutput("asked:", 0.3));
  });
}

TEST_F(AuthorizedFlow, TheOptionKeyHeldWhileClickingEnforcesAuthorization) {
  inThePersonsShoes(*world_, [this] {
    fs::create_directory(home() + "/Applications");
    Session session(home());
    InstallerDriver driver = installer(session);
    const auto agent = agentFor(driver, "right");
    ASSERT_TRUE(driver.waitForButton("Install", kPatience));
    const auto button = driver.showing("Install");
    ASSERT_TRUE(button);
    pressWithAlt(session, {"mousemove", std::to_string(button->x + button->width / 2),
                           std::to_string(button->y + button->height / 2), "click", "1"});
    EXPECT_TRUE(eventually([&] { return logHas("enforcing authorization"); }, kPatience)) << logText();
    releaseAlt(session);
    ASSERT_TRUE(driver.waitForText("Sample was successfully installed.", kPatience)) << logText();
    EXPECT_TRUE(agent->waitForOutput("asked:", kTestPatience));
    EXPECT_EQ(logFromInstall()[1], "enforcing authorization");
  });
  struct stat facts {};
  ASSERT_EQ(::stat((home() + "/Applications/Sample.app").c_str(), &facts), 0);
  EXPECT_EQ(facts.st_uid, 0U);
}

TEST_F(AuthorizedFlow, TheOptionKeyHeldWhileTheButtonIsPressedByKeyEnforcesAuthorization) {
  inThePersonsShoes(*world_, [this] {
    fs::create_directory(home() + "/Applications");
    Session session(home());
    InstallerDriver driver = installer(session);
    const auto agent = agentFor(driver, "right");
    ASSERT_TRUE(driver.waitForButton("Install", kPatience));
    pressWithAlt(session, {"key", "--clearmodifiers", "alt+Return"});
    EXPECT_TRUE(eventually([&] { return logHas("enforcing authorization"); })) << logText();
    releaseAlt(session);
    EXPECT_TRUE(driver.waitForText("Sample was successfully installed.", kPatience)) << logText();
  });
}

}  // namespace
}  // namespace halvorn
