// The installer's start where parts of the session are missing, broken or silent.
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "Platform/running/posix/FileDescriptor.h"
#include "tests/flows/FlowFixture.h"
#include "tests/support/TestFiles.h"

namespace halvorn {
namespace {

constexpr int kNoWindow = 69;
// All that the start may wait for others, and what a slow machine needs besides.
constexpr double kLongestWait = 2.0;
constexpr double kSlowMachine = 8.0;
#if defined(__SANITIZE_ADDRESS__)
// The sanitizer reads its options from /proc; without it the search for leaks cannot be turned off, and changes the status.
constexpr int kStatusWithoutProc = 1;
#else
constexpr int kStatusWithoutProc = kNoWindow;
#endif
// The sanitizer's search for leaks needs a thread; where it cannot have one, it changes the status.
constexpr char kNoLeakSearch[] = "ASAN_OPTIONS=detect_leaks=0";

// Takes the connection and never says a word. `backlog` 0 and nobody accepting: even the connection is not taken soon.
class SilentServer {
 public:
  explicit SilentServer(const std::string& path)
      : listening_(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    path.copy(address.sun_path, sizeof address.sun_path - 1);
    EXPECT_EQ(::bind(listening_.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address), 0)
        << path;
    EXPECT_EQ(::listen(listening_.get(), 16), 0);
  }

 private:
  FileDescriptor listening_;
};

class Surroundings : public FlowFixture {
 protected:
  // The environment of the desktop, some of it changed.
  [[nodiscard]] std::vector<std::string> changed(const std::vector<std::string>& entries) {
    return desktop().environmentWith(entries);
  }
  // Started by a shell that does something to itself first.
  [[nodiscard]] std::vector<std::string> after(const std::string& preparation) const {
    return {"/bin/sh",        "-c",          preparation + " && exec \"$0\" \"$@\"",
            builtInstaller(), "-sourcePath", product()};
  }
  [[nodiscard]] std::string logFile() {
    const std::string path = desktop().homeFolder() + "/Library/Logs/HalvornInstaller.log";
    return std::filesystem::exists(path) ? contentsOf(path) : "";
  }
  [[nodiscard]] bool windowComes(double seconds) {
    return eventually(
        [this] {
          return runCommand({"xdotool", "search", "--onlyvisible", "--name", "^Install Sample$"},
                            {.environment = desktop().environment()})
                     .status == 0;
        },
        seconds);
  }
  void expectSentence(const std::vector<std::string>& command, const std::vector<std::string>& environment,
                      const std::string& sentence, int status = kNoWindow) {
    const double begun = testSeconds();
    ChildProcess installer(command, {.environment = environment});
    EXPECT_EQ(installer.waitForEnd(kTestPatience), status) << sentence << ": " << installer.output();
    EXPECT_LT(testSeconds() - begun, kLongestWait + kSlowMachine) << sentence;
    EXPECT_NE(installer.output().find(sentence), std::string::npos) << installer.output();
    EXPECT_EQ(installer.output().find("einstall"), std::string::npos) << "no advice to install it anew";
    EXPECT_NE(logFile().find(sentence), std::string::npos) << "the log: " << logFile();
    EXPECT_FALSE(std::filesystem::exists(destination()));
    std::filesystem::remove(desktop().homeFolder() + "/Library/Logs/HalvornInstaller.log");
  }
};

TEST_F(Surroundings, WithoutADisplayThereIsASentence) {
  const std::vector<std::string> command = after("true");
  expectSentence(command, changed({"DISPLAY="}),
                 "ERROR -- Without a window: there is no display (DISPLAY is not set).");
  expectSentence(command, changed({"DISPLAY=:63999"}),
                 "ERROR -- Without a window: the display :63999 cannot be reached.");
  expectSentence(command, changed({"DISPLAY=", "WAYLAND_DISPLAY=wayland-7"}),
                 "ERROR -- Without a window: the display wayland-7 cannot be reached.");
}

TEST_F(Surroundings, ACompositorThatIsSilentIsNotWaitedForLong) {
  const SilentServer compositor(desktop().runtimeFolder() + "/wayland-7");
  expectSentence(after("true"), changed({"DISPLAY=", "WAYLAND_DISPLAY=wayland-7"}),
                 "ERROR -- Without a window: the display wayland-7 does not answer.");
}

TEST_F(Surroundings, ADisplayThatTakesTheConnectionAndIsSilentIsNotWaitedForLong) {
  const std::string path = "/tmp/.X11-unix/X" + std::to_string(20'000 + ::getpid() % 20'000);
  std::filesystem::create_directories("/tmp/.X11-unix");
  ASSERT_FALSE(std::filesystem::exists(path));
  {
    const SilentServer display(path);
    expectSentence(after("true"), changed({"DISPLAY=:" + path.substr(path.rfind('X') + 1)}),
                   "does not answer.");
  }
  std::filesystem::remove(path);
}

TEST_F(Surroundings, WithoutDescriptorsOrProcThereIsASentence) {
  std::vector<std::string> few = after("ulimit -n 12");
  // The administrator would raise the limit again.
  if (::geteuid() == 0) few.insert(few.begin(), {"setpriv", "--bounding-set=-sys_resource"});
  expectSentence(few, desktop().environment(), "too few files may be open at once (ulimit -n).");
  if (::geteuid() != 0) GTEST_SKIP() << "only the administrator can take /proc away";
  std::vector<std::string> command = after("mount -t tmpfs none /proc");
  command.insert(command.begin(), {"unshare", "--mount", "--propagation", "private"});
  if (runCommand({"unshare", "--mount", "mount", "-t", "tmpfs", "none", "/proc"}).status != 0)
    GTEST_SKIP() << "this account may not mount anything";
  expectSentence(command, desktop().environment(), "/proc is missing, where running programs are seen.",
                 kStatusWithoutProc);
}

TEST_F(Surroundings, WithoutAFurtherThreadThereIsASentence) {
  std::vector<std::string> command = after("true");
  command.insert(command.begin(), {"prlimit", "--nproc=1"});
  std::vector<std::string> environment = changed({kNoLeakSearch});
  const TemporaryFolder home;
  if (::geteuid() == 0) {
    // The limit is not the administrator's.
    constexpr uid_t kNobody = 65534;
    const std::vector<std::string> asNobody = {"setpriv", "--reuid=65534", "--regid=65534", "--clear-groups"};
    std::vector<std::string> reach = asNobody;
    reach.insert(reach.end(), {"test", "-x", builtInstaller()});
    if (runCommand(reach).status != 0) GTEST_SKIP() << "no other account may look into the build's folder";
    command.insert(command.begin(), asNobody.begin(), asNobody.end());
    ASSERT_EQ(::chown(home.path().c_str(), kNobody, kNobody), 0);
    environment = changed({"HOME=" + home.path().string(), kNoLeakSearch});
  }
  ChildProcess installer(command, {.environment = environment});
  EXPECT_EQ(installer.waitForEnd(kTestPatience), kNoWindow);
  EXPECT_NE(installer.output().find("ERROR -- Without a window: no further thread can be had (ulimit -u)."),
            std::string::npos)
      << installer.output();
}

TEST_F(Surroundings, ASilentPortalDoesNotKeepTheWindowAway) {
  ChildProcess portal({KT_PORTAL_PROBE, "silent"}, {.environment = desktop().environment()});
  ASSERT_TRUE(portal.waitForOutput("ready", kTestPatience)) << portal.output();
  InstallerDriver installer(desktop(), {"-sourcePath", product()});
  EXPECT_TRUE(installer.waitForButton("Install", kTestPatience)) << installer.process().output();
  EXPECT_TRUE(eventually([&] {
    return logFile().find("The desktop portal does not answer") != std::string::npos;
  })) << logFile();
  EXPECT_EQ(installer.process().end(SIGTERM, kTestPatience), 0);
}

TEST_F(Surroundings, ASilentSessionBusDoesNotKeepTheWindowAway) {
  const std::string path = desktop().runtimeFolder() + "/silent";
  const SilentServer bus(path);
  const double begun = testSeconds();
  InstallerDriver installer(
      desktop(), {"-sourcePath", product()},
      {.environment = {"DBUS_SESSION_BUS_ADDRESS=unix:path=" + path, "AT_SPI_BUS_ADDRESS="}});
  EXPECT_TRUE(windowComes(kLongestWait + kSlowMachine)) << installer.process().output();
  EXPECT_LT(testSeconds() - begun, kLongestWait + kSlowMachine);
  EXPECT_TRUE(eventually([&] {
    return logFile().find("The session bus does not answer") != std::string::npos;
  })) << logFile();
  EXPECT_EQ(installer.process().end(SIGTERM, kTestPatience), 0);
}

TEST_F(Surroundings, ASilentAccessibilityBusDoesNotKeepTheWindowAway) {
  const std::string path = desktop().runtimeFolder() + "/silent";
  const SilentServer bus(path);
  InstallerDriver installer(desktop(), {"-sourcePath", product()},
                            {.environment = {"AT_SPI_BUS_ADDRESS=unix:path=" + path}});
  EXPECT_TRUE(windowComes(kLongestWait + kSlowMachine)) << installer.process().output();
  EXPECT_TRUE(eventually([&] {
    return logFile().find("The accessibility bus does not answer") != std::string::npos;
  })) << logFile();
  EXPECT_EQ(installer.process().end(SIGTERM, kTestPatience), 0);
}

// What it would write into its log is too large for the person's limit; the rest is done all the same.
TEST_F(Surroundings, ALogThatMayNotGrowKeepsNoWindowAway) {
  ChildProcess installer(after("ulimit -f 0"), {.environment = changed({"QT_SCALE_FACTOR=1000"})});
  EXPECT_TRUE(windowComes(kTestPatience)) << installer.output();
  EXPECT_EQ(logFile(), "");
  EXPECT_EQ(installer.end(SIGTERM, kTestPatience), 0) << installer.output();
}

TEST_F(Surroundings, ScalesThatNobodyCanMeanAreNotHeeded) {
  for (const char* scale : {"QT_SCALE_FACTOR=-1", "QT_SCALE_FACTOR=1000", "QT_SCREEN_SCALE_FACTORS=1000"}) {
    InstallerDriver installer(desktop(), {"-sourcePath", product()}, {.environment = {scale}});
    EXPECT_TRUE(installer.waitForButton("Install", kTestPatience))
        << scale << ": " << installer.process().output();
    EXPECT_TRUE(eventually([&] {
      return logFile().find("Not heeded: " + std::string(scale)) != std::string::npos;
    })) << logFile();
    EXPECT_EQ(installer.process().end(SIGTERM, kTestPatience), 0) << scale;
  }
}

}  // namespace
}  // namespace halvorn
