#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>

#include "Platform/bundles/linux/LinuxBundles.h"
#include "Platform/bundles/linux/launching/Launcher.h"
#include "Platform/bundles/linux/launching/LinuxWorkspace.h"
#include "Platform/bundles/linux/launching/OpenToolTasks.h"
#include "Platform/rights/posix/Accounts.h"
#include "Platform/session/linux/XdgFolders.h"
#include "tests/fakes/FakeClock.h"
#include "tests/fakes/FakeTasks.h"
#include "tests/fakes/FakeTemporaryFiles.h"
#include "tests/fakes/FakeWorkspace.h"
#include "tests/support/LaunchReport.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/TextPrinting.h"

namespace halvorn {
namespace {

namespace fs = std::filesystem;

constexpr char kProbe[] = KT_LAUNCH_PROBE;

// A person with a home folder, a PATH of the test's own, and variables that a
// launch must and must not pass on.
class LaunchingTest : public testing::Test {
 protected:
  LaunchingTest() {
    fs::create_directories(home());
    variables_ = {{"HOME", home()},
                  {"PATH", folder_ / "bin" + ":/usr/bin:/bin"},
                  {"LANG", "de_DE.UTF-8"},
                  {"LC_TIME", "en_GB"},
                  {"DISPLAY", ":77"},
                  {"XDG_RUNTIME_DIR", "/run/user/77"},
                  {"XDG_ACTIVATION_TOKEN", "stale"},
                  {"DESKTOP_STARTUP_ID", "stale"},
                  {"LD_LIBRARY_PATH", "/evil"},
                  {"QT_PLUGIN_PATH", "/evil"},
                  {"INSTALLER_SECRET", "x"}};
  }
  [[nodiscard]] std::string home() const { return folder_ / "home"; }
  [[nodiscard]] Environment environment() const { return Environment(variables_); }

  bool open(const std::string& path, Launcher::ActivationTokens tokens = nullptr) {
    const XdgFolders folders(environment());
    const LinuxBundles bundles("/usr/bin/test", {});
    const Launcher launcher(environment(), folders, std::move(tokens));
    return LinuxWorkspace(bundles, folders, environment(), launcher, {}).openFile(Text(path));
  }
  [[nodiscard]] LaunchReport report() const { return LaunchReport::in(folder_.path().string()); }
  // The id of the program itself with ten digits, and that of this one.
  static std::string markOf(const LaunchReport& started) {
    const std::string id = started.one("pid");
    return std::string(10 - std::min<std::size_t>(10, id.size()), '0') + id + " " +
           std::to_string(::getpid());
  }
  std::string probeBundle(const std::string& name) {
    return putProbeBundle(folder_.path().string(), name, kProbe);
  }

  TemporaryFolder folder_;
  Environment::Variables variables_;
};

TEST_F(LaunchingTest, ABundlesProgramStartsAsThePersonsOwn) {
  ASSERT_TRUE(open(probeBundle("Foo")));
  const LaunchReport started = report();
  ASSERT_TRUE(started.exists());
  EXPECT_TRUE(started.has("uid " + std::to_string(::getuid()) + " " + std::to_string(::getuid())));
  EXPECT_TRUE(started.has("gid " + std::to_string(::getgid()) + " " + std::to_string(::getgid())));
  EXPECT_EQ(started.one("folder"), home());
  EXPECT_EQ(started.one("mask"), "22");
  EXPECT_EQ(started.one("session"), "own");
  EXPECT_NE(started.one("parent"), std::to_string(::getpid()));
  EXPECT_EQ(started.one("blocked"), "0000000000000000");
  EXPECT_EQ(started.one("ignored"), "0000000000000000");
  EXPECT_EQ(started.all("descriptor"),
            (std::vector<std::string>{"0 /dev/null", "1 /dev/null", "2 /dev/null"}));
  EXPECT_TRUE(started.all("argument").empty());
}

TEST_F(LaunchingTest, OnlyThePersonsVariablesArePassedOn) {
  ASSERT_TRUE(open(probeBundle("Foo")));
  const LaunchReport started = report();
  std::vector<std::string> passed = started.all("variable");
  std::sort(passed.begin(), passed.end());
  EXPECT_EQ(passed, (std::vector<std::string>{"DISPLAY=:77", "HALVORN_LAUNCHED_BY=" + markOf(started),
                                              "HOME=" + home(), "LANG=de_DE.UTF-8", "LC_TIME=en_GB",
                                              "PATH=" + variables_["PATH"], "XDG_RUNTIME_DIR=/run/user/77"}));
}

TEST_F(LaunchingTest, WhoWasItselfLaunchedDoesNotPassItsMarkOn) {
  variables_["HALVORN_LAUNCHED_BY"] = "17 4";
  ASSERT_TRUE(open(probeBundle("Foo")));
  const LaunchReport started = report();
  EXPECT_TRUE(started.has("variable HALVORN_LAUNCHED_BY=" + markOf(started)));
  EXPECT_FALSE(started.has("variable HALVORN_LAUNCHED_BY=17 4"));
}

TEST_F(LaunchingTest, ARaisedDescriptorLimitDoesNotClingToWhatIsStarted) {
  rlimit own{};
  ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &own), 0);
  rlimit before = own;
  before.rlim_cur = own.rlim_cur - 1;
  const XdgFolders folders(environment());
  const LinuxBundles bundles("/usr/bin/test", {});
  const Launcher launcher(environment(), folders, nullptr, before);
  ASSERT_TRUE(
      LinuxWorkspace(bundles, folders, environment(), launcher, {}).openFile(Text(probeBundle("Foo"))));
  EXPECT_EQ(report().one("limit"), std::to_string(before.rlim_cur));
}

TEST_F(LaunchingTest, WithoutAPathVariableThereIsStillAPath) {
  variables_.erase("PATH");
  ASSERT_TRUE(open(probeBundle("Foo")));
  EXPECT_TRUE(report().has("variable PATH=/usr/local/bin:/usr/bin:/bin"));
}

TEST_F(LaunchingTest, AnActivationTokenOfTheDesktopGoesToTheProgram) {
  std::vector<std::string> asked;
  const std::string bundle = probeBundle("Foo");
  ASSERT_TRUE(open(bundle, [&](const std::string& program) {
    asked.push_back(program);
    return OptionalText("fresh");
  }));
  const LaunchReport started = report();
  EXPECT_TRUE(started.has("variable XDG_ACTIVATION_TOKEN=fresh"));
  EXPECT_TRUE(started.has("variable DESKTOP_STARTUP_ID=fresh"));
  EXPECT_EQ(asked, std::vector<std::string>{bundle + "/Contents/Linux/Probe"});
}

TEST_F(LaunchingTest, WhatThisProgramChangedForItselfDoesNotClingToWhatItStarts) {
  const pid_t child = ::fork();
  if (child == 0) {
    ::umask(077);
    ::signal(SIGPIPE, SIG_IGN);
    ::signal(SIGINT, SIG_IGN);
    sigset_t blocked;
    sigemptyset(&blocked);
    sigaddset(&blocked, SIGTERM);
    ::sigprocmask(SIG_BLOCK, &blocked, nullptr);
    for (int i = 0; i < 20; ++i)
      (void)::open("/dev/zero", O_RDONLY);  // inherited unless somebody closes them
    if (::chdir("/usr") != 0) ::_exit(2);
    const bool isOpened = open(probeBundle("Foo"));
    sigset_t now;
    ::sigprocmask(SIG_SETMASK, nullptr, &now);
    ::_exit(isOpened && sigismember(&now, SIGTERM) == 1 && sigismember(&now, SIGINT) == 0 ? 0 : 1);
  }
  int status = -1;
  ASSERT_EQ(::waitpid(child, &status, 0), child);
  EXPECT_EQ(status, 0);
  const LaunchReport started = report();
  EXPECT_EQ(started.one("folder"), home());
  EXPECT_EQ(started.one("mask"), "22");
  EXPECT_EQ(started.one("blocked"), "0000000000000000");
  EXPECT_EQ(started.one("ignored"), "0000000000000000");
  EXPECT_EQ(started.all("descriptor").size(), 3u);
}

TEST_F(LaunchingTest, WithoutAHomeFolderTheProgramStartsAtTheRoot) {
  variables_["HOME"] = folder_ / "gone";
  ASSERT_TRUE(open(probeBundle("Foo")));
  EXPECT_EQ(report().one("folder"), "/");
}

TEST_F(LaunchingTest, PathsMayHoldAnyBytes) {
  for (const std::string name : {"Fo o", "F'o\"o", "F\no", "F%o$(x)`y`", "F\xE4\xFFo", "-rf", "Grüße"}) {
    ASSERT_TRUE(open(probeBundle(name))) << name;
    EXPECT_TRUE(report().exists()) << name;
  }
}

TEST_F(LaunchingTest, NothingIsLeftBehindByALaunch) {
  const auto descriptors = [] {
    return std::distance(fs::directory_iterator("/proc/self/fd"), fs::directory_iterator());
  };
  const std::string bundle = probeBundle("Foo");
  const auto before = descriptors();
  ASSERT_TRUE(open(bundle));
  EXPECT_TRUE(report().exists());
  EXPECT_FALSE(open(folder_ / "missing.app"));
  EXPECT_EQ(descriptors(), before);
  EXPECT_EQ(::waitpid(-1, nullptr, WNOHANG), -1) << "the program is nobody's zombie";
}

TEST_F(LaunchingTest, WhatCannotRunIsNotOpened) {
  const std::string info = infoPlist(plistEntry("CFBundleExecutable", "Foo"));
  const auto bundle = [&](const std::string& name, const std::string& program, Executable executable) {
    putFile(folder_ / (name + ".app/Contents/Info.plist"), info);
    putFile(folder_ / (name + ".app/Contents/MacOS/Foo"), program, executable);
    return folder_ / (name + ".app");
  };
  EXPECT_FALSE(open(bundle("Other", "\xCF\xFA\xED\xFE program for another system", Executable::Yes)));
  EXPECT_FALSE(open(bundle("Empty", "", Executable::Yes)));
  EXPECT_FALSE(open(bundle("Words", "echo no interpreter named\n", Executable::Yes)));
  EXPECT_FALSE(open(bundle("Lost", "#!/nonexistent/interpreter\n", Executable::Yes)));
  EXPECT_FALSE(open(bundle("Half",
                           std::string("\x7F"
                                       "ELF\x02\x01\x01",
                                       7),
                           Executable::Yes)));
  EXPECT_FALSE(open(bundle("Closed", "#!/bin/sh\n", Executable::No)));
  fs::create_directories(folder_ / "None.app/Contents");
  EXPECT_FALSE(open(folder_ / "None.app"));
  EXPECT_FALSE(open(folder_ / "missing.app"));
  EXPECT_FALSE(open(""));
}

TEST_F(LaunchingTest, AScriptInTheOtherSystemsFolderIsStarted) {
  putFile(folder_ / "Foo.app/Contents/Info.plist", infoPlist(plistEntry("CFBundleExecutable", "Foo")));
  putFile(folder_ / "Foo.app/Contents/MacOS/Foo",
          "#!/bin/sh\necho folder $PWD > '" + (folder_ / "report") + "'\n", Executable::Yes);
  ASSERT_TRUE(open(folder_ / "Foo.app"));
  EXPECT_TRUE(eventually([&] { return contentsOf(folder_ / "report") == "folder " + home() + "\n"; }));
}

TEST_F(LaunchingTest, AFlatBundleOfADistributionIsStarted) {
  // The real program would open a window: the probe stands in its place, in the
  // folder as the package lays it out.
  const std::string installed = "/usr/lib/GNUstep/Applications/EdenMath.app";
  if (!fs::exists(installed)) GTEST_SKIP() << "the package with " << installed << " is not installed";
  const std::string bundle = folder_ / "EdenMath.app";
  fs::create_directories(bundle);
  fs::copy(fs::canonical(installed + "/Resources"), bundle + "/Resources", fs::copy_options::recursive);
  fs::copy_file(kProbe, bundle + "/EdenMath");
  ASSERT_TRUE(open(bundle));
  EXPECT_TRUE(report().exists());
}

TEST_F(LaunchingTest, UnderTheAdministratorsRightsThePersonWhoAskedIsTheOneWhoLaunches) {
  if (::geteuid() != 0) GTEST_SKIP() << "needs the administrator's rights";
  fs::permissions(folder_.path(), static_cast<fs::perms>(0777));
  const auto nobody = accountWithUid(65534);
  ASSERT_TRUE(nobody);
  for (const char* const name : {"PKEXEC_UID", "SUDO_UID"}) {
    variables_.erase("PKEXEC_UID");
    variables_[name] = "65534";
    variables_["XDG_CONFIG_HOME"] = "/admin/.config";
    variables_["DBUS_SESSION_BUS_ADDRESS"] = "unix:path=/admin/bus";
    ASSERT_TRUE(open(probeBundle(name)));
    const LaunchReport started = report();
    ASSERT_TRUE(started.exists());
    EXPECT_TRUE(started.has("uid 65534 65534"));
    EXPECT_TRUE(started.has("gid " + std::to_string(nobody->gid) + " " + std::to_string(nobody->gid)));
    EXPECT_EQ(started.one("groups"), std::to_string(nobody->gid));
    EXPECT_TRUE(started.has("variable HOME=" + nobody->home));
    EXPECT_TRUE(started.has("variable USER=nobody"));
    for (const std::string& variable : started.all("variable")) {
      EXPECT_EQ(variable.find("/root"), std::string::npos) << variable;
    }
  }
}

TEST_F(LaunchingTest, WhoHasRightsOfAnUnknownPersonLaunchesNothing) {
  if (::geteuid() != 0) GTEST_SKIP() << "needs the administrator's rights";
  for (const char* const uid : {"4000000000", "-1", "abc", "65534x", ""}) {
    variables_["PKEXEC_UID"] = uid;
    EXPECT_FALSE(open(probeBundle(std::string("Foo") + uid))) << uid;
  }
}

// Anything but a bundle.

class OpeningTest : public LaunchingTest {
 protected:
  // An opener of the test's own writes its arguments down.
  void putOpener(const std::string& name = "xdg-open") {
    putFile(
        folder_ / "bin/" + name,
        "#!/bin/sh\nfor word in \"$@\"; do printf '[%s]' \"$word\" >> '" + (folder_ / "asked") + "'; done\n",
        Executable::Yes);
  }
  [[nodiscard]] bool wasAsked(const std::string& words) const {
    return eventually([&] { return contentsOf(folder_ / "asked") == words; });
  }
  bool openUrl(const Text& url) {
    const XdgFolders folders(environment());
    const LinuxBundles bundles("/usr/bin/test", {});
    const Launcher launcher(environment(), folders);
    return LinuxWorkspace(bundles, folders, environment(), launcher, {}).openUrl(url);
  }
};

TEST_F(OpeningTest, AFileGoesToTheDesktopsOpener) {
  putOpener();
  const std::string file = putFile(folder_ / "a file'\n$(x).txt", "words");
  ASSERT_TRUE(open(file));
  EXPECT_TRUE(wasAsked("[" + file + "]"));
}

TEST_F(OpeningTest, AFolderThatIsNoBundleGoesThereToo) {
  putOpener();
  ASSERT_TRUE(open(home()));
  EXPECT_TRUE(wasAsked("[" + home() + "]"));
}

TEST_F(OpeningTest, ARelativePathIsMadeAbsolute) {
  putOpener();
  const fs::path before = fs::current_path();
  fs::current_path(folder_.path());
  putFile(folder_ / "-file", "words");
  EXPECT_TRUE(open("-file"));
  fs::current_path(before);
  EXPECT_TRUE(wasAsked("[" + (folder_ / "-file") + "]"));
}

TEST_F(OpeningTest, WithoutAnOpenerNothingIsOpened) {
  variables_["PATH"] = folder_ / "bin";
  EXPECT_FALSE(open(putFile(folder_ / "file", "x")));
  EXPECT_FALSE(openUrl("https://localhost/"));
}

TEST_F(OpeningTest, WhatIsNotThereIsNotOpened) {
  putOpener();
  EXPECT_FALSE(open(folder_ / "missing"));
  EXPECT_FALSE(fs::exists(folder_ / "asked"));
}

TEST_F(OpeningTest, OnlyWebPagesAreOpenedAsAddresses) {
  putOpener();
  EXPECT_FALSE(openUrl("file:///etc/passwd"));
  EXPECT_FALSE(openUrl("--help"));
  EXPECT_FALSE(openUrl("javascript:x"));
  EXPECT_FALSE(openUrl(""));
  ASSERT_TRUE(openUrl("https://localhost/archive?a=b&c"));
  EXPECT_TRUE(wasAsked("[https://localhost/archive?a=b&c]"));
}

TEST_F(OpeningTest, TheRealOpenerHandsAFileToItsApplication) {
  const std::string file = putFile(folder_ / "a file.txt", "words");
  if (!programExists("xdg-open") ||
      runCommand({"xdg-mime", "query", "filetype", file}).output != "text/plain\n") {
    GTEST_SKIP() << "xdg-utils, or the program file that it asks, is not installed";
  }
  fs::copy_file(kProbe, folder_ / "viewer");
  putFile(folder_ / "data/applications/viewer.desktop",
          "[Desktop Entry]\nType=Application\nName=Viewer\nMimeType=text/plain;\nExec=" +
              (folder_ / "viewer") + " %f\n");
  putFile(folder_ / "config/mimeapps.list", "[Default Applications]\ntext/plain=viewer.desktop\n");
  variables_["XDG_DATA_HOME"] = folder_ / "data";
  variables_["XDG_CONFIG_HOME"] = folder_ / "config";
  variables_["DISPLAY"] =
      ":987";  // the opener looks for applications only where there is a display; none is asked
  ASSERT_TRUE(open(file));
  const LaunchReport started = report();
  ASSERT_TRUE(started.exists());
  EXPECT_EQ(started.one("argument"), file);
}

// "/usr/bin/open".

class OpenToolTest : public testing::Test {
 protected:
  void launch(const std::string& tool, const std::vector<Text>& arguments) {
    OpenToolTasks(tasks, workspace, Text(tool)).launchAndForget(Text(tool), arguments);
  }
  TemporaryFolder folder;
  FakeClock clock;
  FakeTemporaryFiles files;
  FakeTasks tasks{files, clock};
  FakeWorkspace workspace;
};

TEST_F(OpenToolTest, ABundleIsOpenedByTheWorkspace) {
  fs::create_directory(folder / "Foo.app");
  launch(putFile(folder / "open", "x"), {Text(folder / "Foo.app")});
  EXPECT_EQ(workspace.opened, std::vector<Text>{Text(folder / "Foo.app")});
  EXPECT_TRUE(tasks.forgotten.empty());
}

TEST_F(OpenToolTest, AnythingElseGoesToTheToolWhereThereIsOne) {
  const std::string tool = putFile(folder / "open", "x");
  launch(tool, {"/etc/hostname"});
  EXPECT_TRUE(workspace.opened.empty());
  ASSERT_EQ(tasks.forgotten.size(), 1u);
}

TEST_F(OpenToolTest, WithoutTheToolItGoesToTheDesktop) {
  launch(folder / "open", {"/etc/hostname"});
  EXPECT_EQ(workspace.opened, std::vector<Text>{"/etc/hostname"});
}

TEST_F(OpenToolTest, OtherProgramsAreStartedAsTheyAre) {
  OpenToolTasks(tasks, workspace, Text(folder / "open")).launchAndForget("/bin/true", {"/Foo.app"});
  EXPECT_TRUE(workspace.opened.empty());
  EXPECT_EQ(tasks.forgotten.size(), 1u);
}

TEST(RunAndWait, TellsTheStatusAndEndsWhatTakesTooLong) {
  EXPECT_EQ(runAndWait({.program = "/bin/sh", .arguments = {"-c", "exit 7"}}, 10.0), 7);
  EXPECT_EQ(runAndWait({.program = "/nonexistent"}, 10.0), -1);
  EXPECT_EQ(runAndWait({.program = "/bin/sh", .arguments = {"-c", "kill -9 $$"}}, 10.0), -1);
  const double start = testSeconds();
  EXPECT_EQ(runAndWait({.program = "/bin/sleep", .arguments = {"30"}}, 0.1), -1);
  EXPECT_LT(testSeconds() - start, 10.0);
}

}  // namespace
}  // namespace halvorn
