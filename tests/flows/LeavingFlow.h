// An installation over an old copy that somebody leaves: its phases, each held open for as long as a test likes, and what has
// to be true afterwards.
#pragma once

#include <gtest/gtest.h>
#include <sys/syscall.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "tests/flows/FlowFixture.h"
#include "tests/flows/WholeLog.h"
#include "tests/support/TestFiles.h"

namespace halvorn {

inline const Lines kQuitting = {"Quitting 'SMPL': Sample"};
inline const Lines kNothingInstalled = {"Left before anything was touched: nothing is installed"};
inline constexpr double kPatience = 30;

class LeavingFlow : public FlowFixture {
 protected:
  void SetUp() override {
    if (!programExists("strace")) GTEST_SKIP() << "strace is not installed";
    FlowFixture::SetUp();
    if (IsSkipped() || HasFatalFailure()) return;
    old_ = makeSampleProduct(applications(), {.version = "1.0"});
  }

  // Runs the old copy and stops it: it cannot obey a request to quit.
  std::unique_ptr<ChildProcess> startedAndStopped() {
    const std::string program = old_ / "Contents/Linux/Sample";
    auto running =
        std::make_unique<ChildProcess>(std::vector<std::string>{program},
                                       ChildOptions{.environment = desktop().environmentWith(reportEntry())});
    running->sendSignal(SIGSTOP);
    return running;
  }

  // Makes each such call of the installer take its time, for as long as the object exists.
  std::unique_ptr<ChildProcess> slowDown(InstallerDriver& installer, const std::string& call,
                                         const std::string& microseconds) {
    auto tracer = std::make_unique<ChildProcess>(std::vector<std::string>{
        "strace", "-f", "-o", "/dev/null", "-e", "trace=" + call, "-e",
        "inject=" + call + ":delay_enter=" + microseconds, "-p", std::to_string(installer.process().pid())});
    EXPECT_TRUE(tracer->waitForOutput("attached", kPatience)) << tracer->output();
    return tracer;
  }

  // Clicks Install, until the old copy is being asked to quit.
  void askToQuit(InstallerDriver& installer) {
    ASSERT_TRUE(installer.click("Install"));
    ASSERT_TRUE(eventually([&] { return logHas(kQuitting.front()); }, kPatience));
  }

  // Clicks Install, until the old copy is in the Trash and the new one has begun; it takes its time for as long as the
  // tracer exists.
  void beginToCopy(InstallerDriver& installer, std::unique_ptr<ChildProcess>& tracer) {
    ASSERT_TRUE(installer.waitForButton("Install", kPatience));
    tracer = slowDown(installer, "utimensat", "700000");
    ASSERT_TRUE(installer.click("Install"));
    ASSERT_TRUE(eventually(
        [&] { return std::filesystem::exists(trashed()) && std::filesystem::exists(destination()); },
        kPatience));
  }

  // Whether a thread of the installer is on its way to a signal that nobody can ignore.
  [[nodiscard]] static bool isKilling(InstallerDriver& installer) {
    const std::string call = std::to_string(SYS_pidfd_send_signal) + " ";
    const std::filesystem::directory_iterator threads("/proc/" + std::to_string(installer.process().pid()) +
                                                      "/task");
    return std::any_of(begin(threads), end(threads), [&](const std::filesystem::path& thread) {
      const std::string now = contentsOf(thread / "syscall");
      return now.starts_with(call) && now.find(" 0x9 ") != std::string::npos;
    });
  }

  [[nodiscard]] std::filesystem::path trashed() const {
    return applications().parent_path() / ".local/share/Trash/files/Sample.app";
  }

  void expectNothingTouched() {
    EXPECT_EQ(versionOfBundle(destination()), "1.0");
    EXPECT_FALSE(std::filesystem::exists(trashed()));
    EXPECT_EQ(report().find("started 2.0"), std::string::npos);
  }
  void expectReplaced() {
    EXPECT_TRUE(sameTree(product(), destination()));
    EXPECT_EQ(versionOfBundle(trashed()), "1.0");
  }
  // Because the session ended.
  void expectNotLaunched() {
    EXPECT_EQ(report().find("started 2.0"), std::string::npos);
    EXPECT_FALSE(endProgramsBelow(destination()));
  }
  // What the log says of the copy when the session ended meanwhile.
  static Lines copiedAndNotLaunched() {
    const Lines whole = installLog();
    return Lines(whole.begin(), whole.end() - 1) + Lines{"not launched: the session ends"};
  }

 private:
  std::filesystem::path old_;
};

}  // namespace halvorn
