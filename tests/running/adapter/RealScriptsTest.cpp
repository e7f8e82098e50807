// Real scripts, a real shell, real files.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <clocale>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "KTStuff/KTClasses/KTUtilitiesScripts.h"
#include "Platform/files/posix/PosixTemporaryFiles.h"
#include "Platform/running/posix/FileDescriptor.h"
#include "Platform/running/posix/PosixClock.h"
#include "Platform/running/posix/PosixTasks.h"
#include "tests/fakes/FakeSearchPaths.h"
#include "tests/fakes/RecordingLog.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/MadeLocale.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/TestFiles.h"

namespace halvorn {
namespace {

// All units are the same when each is the same as the next.
bool isHundredMegabytesOfA(const Text& text) {
  const auto units = text.units();
  return units.size() == 100'000'000 && units.front() == u'a' &&
         std::memcmp(units.data(), units.data() + 1, (units.size() - 1) * sizeof(char16_t)) == 0;
}

// The real clock, and how often it was slept by.
class CountingClock : public PosixClock {
 public:
  void sleep(double seconds) override {
    slept.push_back(seconds);
    PosixClock::sleep(seconds);
  }
  std::vector<double> slept;
};

// A standard stream of this process as a test wants it, for as long as the object lives.
class WithStream {
 public:
  // -1 closes the stream.
  WithStream(int stream, int replacement) : stream_(stream), saved_(::fcntl(stream, F_DUPFD_CLOEXEC, 100)) {
    if (replacement < 0) {
      ::close(stream);
    } else {
      ::dup2(replacement, stream);
    }
  }
  ~WithStream() {
    if (saved_.get() < 0) {
      ::close(stream_);
    } else {
      ::dup2(saved_.get(), stream_);
    }
  }
  WithStream(const WithStream&) = delete;
  WithStream& operator=(const WithStream&) = delete;

 private:
  const int stream_;
  const FileDescriptor saved_;
};

class RealScripts : public testing::Test {
 protected:
  RealScripts() {
    std::filesystem::create_directory(folder / "home");
    std::filesystem::create_directory(folder / "tmp");
    searchPaths.home = folder / "home";
  }

  void TearDown() override {
    EXPECT_TRUE(eventually([&] { return hasNoChildren(); }));
  }

  // An executable script in the home folder.
  Text script(const std::string& text, mode_t mode = 0700) {
    const std::string path = folder / "home/test script.sh";
    std::ofstream(path) << text;
    ::chmod(path.c_str(), mode);
    return path;
  }
  OptionalText run(const std::string& lines, double timeout = 30) {
    return utilities.runShellScript(script("#!/bin/sh\n" + lines), std::nullopt, timeout);
  }
  std::size_t temporaryFiles() const {
    const std::filesystem::directory_iterator entries(folder / "tmp");
    return static_cast<std::size_t>(std::distance(begin(entries), end(entries)));
  }
  // Ends a program that a script left behind, known by the process id it printed.
  static void endLeftOver(std::int32_t pid) {
    ASSERT_GT(pid, 1);
    EXPECT_EQ(::kill(pid, SIGKILL), 0);
  }
  // Whether all that ended was collected; every call of the tasks does that in passing.
  bool hasNoChildren() {
    (void)tasks.standardOutputOf("/no/such/program", {});
    siginfo_t information = {};
    return ::waitid(P_ALL, 0, &information, WEXITED | WNOHANG | WNOWAIT) == -1 && errno == ECHILD;
  }

  TemporaryFolder folder;
  PosixTasks tasks;
  PosixTemporaryFiles files{Text(folder / "tmp")};
  FakeSearchPaths searchPaths;
  CountingClock clock;
  RecordingLog log;
  KTUtilitiesScripts utilities{tasks, files, searchPaths, clock, log};
};

using RunShellScriptForReal = RealScripts;

TEST_F(RunShellScriptForReal, BothStreamsInterleaveInTheOrderWritten) {
  std::string lines;
  std::string expected;
  for (int i = 0; i < 50; ++i) {
    lines += "echo out" + std::to_string(i) + "\necho err" + std::to_string(i) + " >&2\n";
    expected += "out" + std::to_string(i) + "\nerr" + std::to_string(i) + "\n";
  }
  EXPECT_EQ(run(lines), Text(expected));
  EXPECT_TRUE(log.lines().empty());
}

TEST_F(RunShellScriptForReal, WritingToStandardErrorOnlyIsReturned) {
  EXPECT_EQ(run("echo complaint >&2\n"), Text("complaint\n"));
}

TEST_F(RunShellScriptForReal, ParametersArriveAsTheyAre) {
  const Text path = script("#!/bin/sh\nfor a in \"$@\"; do printf '<%s>' \"$a\"; done\n");
  EXPECT_EQ(utilities.runShellScript(path, std::vector<Text>{"a b", "", "*", "$HOME", "grüße\n"}, 30),
            Text("<a b><><*><$HOME><grüße\n>"));
}

TEST_F(RunShellScriptForReal, NoParametersAndAnEmptyListAreTheSame) {
  const Text path = script("#!/bin/sh\necho $#\n");
  EXPECT_EQ(utilities.runShellScript(path, std::nullopt, 30), Text("0\n"));
  EXPECT_EQ(utilities.runShellScript(path, std::vector<Text>{}, 30), Text("0\n"));
}

TEST_F(RunShellScriptForReal, ParameterWithAZeroCharacterIsRefused) {
  const Text path = script("#!/bin/sh\necho $#\n");
  const Text parameter(std::u16string(u"a\0b", 3));
  EXPECT_EQ(utilities.runShellScript(path, std::vector<Text>{parameter}, 30),
            Text("script test script.sh failed: Invalid argument"));
}

TEST_F(RunShellScriptForReal, RunsInTheHomeFolderWithNothingToRead) {
  EXPECT_EQ(run("pwd -P\nreadlink /proc/self/fd/0\ncat\n"),
            Text(std::filesystem::canonical(folder / "home").string() + "\n/dev/null\n"));
}

TEST_F(RunShellScriptForReal, TildeIsTheHomeFolder) {
  (void)script("#!/bin/sh\necho here\n");
  EXPECT_EQ(utilities.runShellScript("~/test script.sh", std::nullopt, 30), Text("here\n"));
}

TEST_F(RunShellScriptForReal, InheritsNoDescriptorAndNoSignalSetting) {
  const FileDescriptor inheritable(::dup2(STDERR_FILENO, 77));
  ::signal(SIGPIPE, SIG_IGN);
  sigset_t blocked;
  sigset_t before;
  ::sigemptyset(&blocked);
  ::sigaddset(&blocked, SIGTERM);
  ::pthread_sigmask(SIG_BLOCK, &blocked, &before);
  const OptionalText output =
      run("cd /proc/self/fd; echo [0-9]*; grep -E '^Sig(Ign|Blk)' /proc/self/status\n");
  ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
  ::signal(SIGPIPE, SIG_DFL);
  ASSERT_TRUE(output);
  EXPECT_FALSE(output->contains("77")) << output->bytes();
  EXPECT_TRUE(output->contains("SigBlk:\t0000000000000000\n")) << output->bytes();
  // The C library keeps two signals to itself, numbers 32 and 33.
  EXPECT_TRUE(output->contains("SigIgn:\t0000000000000000\n") ||
              output->contains("SigIgn:\t0000000180000000\n"))
      << output->bytes();
}

TEST_F(RunShellScriptForReal, OverItsLimitGivesItsOutputSoFar) {
  const double start = testSeconds();
  EXPECT_EQ(run("echo before\nsleep 30 &\necho $! >sleeper\nwait\necho after\n", 0.3), Text("before\n"));
  EXPECT_GE(testSeconds() - start, 0.3);
  EXPECT_LT(testSeconds() - start, 10);
  EXPECT_EQ(log.lines(), std::vector<std::string>{"script timeout: test script.sh (null)"});
  EXPECT_EQ(clock.slept, std::vector<double>(clock.slept.size(), 0.001));
  EXPECT_EQ(temporaryFiles(), 0u);
  std::int32_t sleeper = 0;
  std::ifstream(folder / "home/sleeper") >> sleeper;
  endLeftOver(sleeper);
}

TEST_F(RunShellScriptForReal, LimitOfZeroIsATimeout) {
  (void)run("exec sleep 30\n", 0);
  EXPECT_EQ(log.lines().size(), 1u);
  EXPECT_TRUE(clock.slept.empty());
}

TEST_F(RunShellScriptForReal, ThatIgnoresTheRequestRunsOnUnwaitedFor) {
  const OptionalText output = run("trap '' TERM\necho $$\nexec sleep 30\n", 0.5);
  ASSERT_TRUE(output);
  const std::int32_t pid = output->intValue();
  EXPECT_EQ(::kill(pid, 0), 0) << "it should still run";
  EXPECT_EQ(temporaryFiles(), 0u);
  endLeftOver(pid);
}

TEST_F(RunShellScriptForReal, ChildrenThatHoldTheFileAreNotWaitedFor) {
  const double start = testSeconds();
  const OptionalText output = run("sleep 30 &\necho $!\n");
  EXPECT_LT(testSeconds() - start, 20);
  ASSERT_TRUE(output);
  EXPECT_TRUE(log.lines().empty());
  EXPECT_EQ(temporaryFiles(), 0u);
  endLeftOver(output->intValue());
}

TEST_F(RunShellScriptForReal, ThatNeverStopsWritingIsReadOnceAndLeft) {
  const OptionalText output = run("trap '' TERM\nwhile :; do echo $$; done\n", 0.3);
  ASSERT_TRUE(output);
  endLeftOver(output->intValue());
}

TEST_F(RunShellScriptForReal, HundredMegabytesArriveWhole) {
  const OptionalText output = run("head -c 100000000 /dev/zero | tr '\\0' a\n", 300);
  ASSERT_TRUE(output);
  EXPECT_TRUE(isHundredMegabytesOfA(*output));
  EXPECT_EQ(temporaryFiles(), 0u);
}

TEST_F(RunShellScriptForReal, OutputThatIsNotUtf8GivesNothing) {
  EXPECT_EQ(run("printf 'gr\\374\\337e'\n"), std::nullopt);
  EXPECT_EQ(temporaryFiles(), 0u);
}

TEST_F(RunShellScriptForReal, MissingScriptFailsAndLeavesItsFile) {
  EXPECT_EQ(utilities.runShellScript("~/missing.sh", std::nullopt, 30),
            Text("script missing.sh failed: No such file or directory"));
  EXPECT_TRUE(log.lines().empty());
  EXPECT_EQ(temporaryFiles(), 1u);
}

TEST_F(RunShellScriptForReal, ScriptThatIsNotExecutableFails) {
  EXPECT_EQ(utilities.runShellScript(script("#!/bin/sh\necho no\n", 0600), std::nullopt, 30),
            Text("script test script.sh failed: Permission denied"));
}

TEST_F(RunShellScriptForReal, ScriptWithoutAnInterpreterLineFails) {
  EXPECT_EQ(utilities.runShellScript(script("echo no\n"), std::nullopt, 30),
            Text("script test script.sh failed: Exec format error"));
}

TEST_F(RunShellScriptForReal, ScriptOfAMissingInterpreterFails) {
  EXPECT_EQ(utilities.runShellScript(script("#!/no/such/interpreter\n"), std::nullopt, 30),
            Text("script test script.sh failed: No such file or directory"));
}

TEST_F(RunShellScriptForReal, FolderInPlaceOfAScriptFails) {
  EXPECT_EQ(utilities.runShellScript("~", std::nullopt, 30), Text("script home failed: Permission denied"));
}

TEST_F(RunShellScriptForReal, MissingHomeFolderIsNamedAsTheReason) {
  const Text path = script("#!/bin/sh\n");
  searchPaths.home = folder / "gone";
  EXPECT_EQ(utilities.runShellScript(path, std::nullopt, 30),
            Text("script test script.sh failed: " + (folder / "gone") + ": No such file or directory"));
}

TEST_F(RunShellScriptForReal, WithoutAFolderForTemporaryFilesFails) {
  std::filesystem::remove_all(folder / "tmp");
  EXPECT_EQ(run("echo no\n"), Text("script test script.sh failed: no temporary file for its output"));
}

TEST_F(RunShellScriptForReal, ItsFileIsForThisUserAlone) {
  const mode_t before = ::umask(0);
  const OptionalText output = run("stat -L -c '%a %h %u %F' /proc/self/fd/1\nreadlink /proc/self/fd/1\n");
  ::umask(before);
  ASSERT_TRUE(output);
  const Text expected = "600 1 " + std::to_string(::geteuid()) + " regular empty file\n";
  EXPECT_TRUE(output->hasPrefix(expected)) << output->bytes();
  EXPECT_TRUE(output->contains(std::filesystem::canonical(folder / "tmp").string() + "/halvorn-"));
}

TEST_F(RunShellScriptForReal, LinkPutInPlaceOfItsFileIsNotFollowed) {
  const std::string target = folder / "precious";
  std::ofstream(target) << "precious";
  std::filesystem::create_symlink(target, folder / "link");
  const TaskLaunch launch =
      tasks.launch(script("#!/bin/sh\necho over\n"), {}, searchPaths.home, folder / "link");
  EXPECT_FALSE(launch.task);
  EXPECT_EQ(files.contents(folder / "link"), std::nullopt);
  EXPECT_EQ(std::filesystem::file_size(target), 8u);
}

using ShellCommandResultForReal = RealScripts;

TEST_F(ShellCommandResultForReal, IsWhatTheCommandPrints) {
  EXPECT_EQ(utilities.shellCommandResult("echo grüße; echo 'a  b' | tr a-z A-Z"), Text("grüße\nA  B\n"));
}

TEST_F(ShellCommandResultForReal, OfNothingIsEmpty) { EXPECT_EQ(utilities.shellCommandResult(""), Text("")); }

TEST_F(ShellCommandResultForReal, LeavesStandardErrorAlone) {
  const FileDescriptor errors(::open((folder / "errors").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600));
  {
    const WithStream stream(STDERR_FILENO, errors.get());
    EXPECT_EQ(utilities.shellCommandResult("echo out; echo err >&2"), Text("out\n"));
  }
  EXPECT_EQ(files.contents(folder / "errors"), "err\n");
}

TEST_F(ShellCommandResultForReal, ReadsTheStandardInputOfThisProgram) {
  std::ofstream(folder / "input") << "given";
  const FileDescriptor input(::open((folder / "input").c_str(), O_RDONLY | O_CLOEXEC));
  const WithStream stream(STDIN_FILENO, input.get());
  EXPECT_EQ(utilities.shellCommandResult("cat"), Text("given"));
}

TEST_F(ShellCommandResultForReal, WorksWithAClosedStandardInput) {
  const WithStream stream(STDIN_FILENO, -1);
  EXPECT_EQ(utilities.shellCommandResult("echo works; test -e /proc/self/fd/0 || echo closed"),
            Text("works\nclosed\n"));
}

TEST_F(ShellCommandResultForReal, WorksWithAllStreamsClosed) {
  OptionalText result;
  {
    const WithStream input(STDIN_FILENO, -1);
    const WithStream output(STDOUT_FILENO, -1);
    const WithStream errors(STDERR_FILENO, -1);
    result = utilities.shellCommandResult("echo works; echo hidden >&2");
  }
  EXPECT_EQ(result, Text("works\n"));
}

TEST_F(ShellCommandResultForReal, HundredMegabytesArriveWhole) {
  const OptionalText output = utilities.shellCommandResult("head -c 100000000 /dev/zero | tr '\\0' a");
  ASSERT_TRUE(output);
  EXPECT_TRUE(isHundredMegabytesOfA(*output));
}

TEST_F(ShellCommandResultForReal, ThatIsNotUtf8IsNothing) {
  EXPECT_EQ(utilities.shellCommandResult("printf '\\377'"), std::nullopt);
}

TEST_F(ShellCommandResultForReal, LastsAsLongAsAnythingHoldsItsOutput) {
  EXPECT_EQ(utilities.shellCommandResult("(sleep 0.3; echo late) & echo early"), Text("early\nlate\n"));
}

TEST_F(ShellCommandResultForReal, DoesNotWaitForACommandThatClosedItsOutput) {
  const double start = testSeconds();
  const OptionalText output = utilities.shellCommandResult("echo $$; exec >&-; exec sleep 20");
  EXPECT_LT(testSeconds() - start, 15);
  ASSERT_TRUE(output);
  endLeftOver(output->intValue());
}

TEST_F(ShellCommandResultForReal, ForgottenProgramsAreNoZombiesAnyMoreWhenAnotherHasRun) {
  const auto mark = [&](int i) { return folder / ("mark" + std::to_string(i)); };
  for (int i = 0; i < 5; ++i) tasks.launchAndForget("/usr/bin/touch", {Text(mark(i))});
  tasks.launchAndForget("/no/such/program", {"x"});
  for (int i = 0; i < 5; ++i) EXPECT_TRUE(eventually([&] { return std::filesystem::exists(mark(i)); })) << i;
  const auto isChildOfOurs = [](const std::filesystem::path& process) {
    if (std::isdigit(static_cast<unsigned char>(process.filename().string().front())) == 0) return false;
    const std::string status = contentsOf(process / "stat");
    return status.find("(touch)") != std::string::npos &&
           status.find(") Z " + std::to_string(::getpid()) + " ") != std::string::npos;
  };
  const auto areCollected = [&] {
    const std::filesystem::directory_iterator processes("/proc");
    return std::none_of(begin(processes), end(processes), isChildOfOurs);
  };
  EXPECT_TRUE(eventually([&] {
    static_cast<void>(tasks.standardOutputOf("/bin/true", {}));
    return areCollected();
  }));
}

// Reasons stand in the log, which is the same in every language.
TEST_F(ShellCommandResultForReal, WhyAProgramCannotBeStartedIsSaidInOneLanguage) {
  if (const auto missing = MadeLocale::missing("de_DE")) GTEST_SKIP() << *missing;
  const MadeLocale locale("de_DE");
  const auto inGerman = [&] {
    for (const std::string& entry : locale.environment()) {
      const std::size_t place = entry.find('=');
      ::setenv(entry.substr(0, place).c_str(), entry.substr(place + 1).c_str(), 1);
    }
    ::setenv("LANGUAGE", "de", 1);
    return std::setlocale(LC_ALL, "") != nullptr &&
           std::strerror(ENOENT) != std::string("No such file or directory");
  };
  const pid_t child = ::fork();
  if (child == 0) {
    if (!inGerman()) ::_exit(2);
    const TaskLaunch launch = tasks.launch("/no/such/program", {}, searchPaths.home, folder / "output");
    ::_exit(launch.failure == Text("No such file or directory") ? 0 : 1);
  }
  int status = -1;
  ASSERT_EQ(::waitpid(child, &status, 0), child);
  if (WEXITSTATUS(status) == 2) GTEST_SKIP() << "the C library speaks no German here (locales)";
  EXPECT_EQ(status, 0);
}

}  // namespace
}  // namespace halvorn
