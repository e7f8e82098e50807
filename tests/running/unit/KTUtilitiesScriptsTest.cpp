#include "KTStuff/KTClasses/KTUtilitiesScripts.h"

#include <gtest/gtest.h>

#include "tests/fakes/FakeClock.h"
#include "tests/fakes/FakeSearchPaths.h"
#include "tests/fakes/FakeTasks.h"
#include "tests/fakes/FakeTemporaryFiles.h"
#include "tests/fakes/RecordingLog.h"

namespace halvorn {
namespace {

const Text script = "/Library/Scripts/report.sh";
using Lines = std::vector<std::string>;

// A clock by which looking at it takes a moment, as real ones do.
class TickingClock : public FakeClock {
 public:
  double monotonicSeconds() const override { return FakeClock::monotonicSeconds() + ++looks_ * 1e-6; }

 private:
  mutable int looks_ = 0;
};

class RunShellScript : public testing::Test {
 protected:
  FakeTaskRecord& theTask() { return *tasks.launched.at(0); }
  void expectNoTemporaryFileLeft() { EXPECT_TRUE(files.files.empty()); }

  FakeClock clock;
  FakeSearchPaths searchPaths;
  FakeTemporaryFiles files;
  FakeTasks tasks{files, clock};
  RecordingLog log;
  KTUtilitiesScripts utilities{tasks, files, searchPaths, clock, log};
};

TEST_F(RunShellScript, ReturnsWhatTheScriptPrints) {
  tasks.programs[script] = {.output = "grüße\n", .seconds = 0.25};
  EXPECT_EQ(utilities.runShellScript(script, std::nullopt, 10), Text("grüße\n"));
  EXPECT_TRUE(log.lines().empty());
  expectNoTemporaryFileLeft();
}

TEST_F(RunShellScript, ReturnsTheTextOfStandardErrorToo) {
  tasks.programs[script] = {.errorOutput = "only complaints\n"};
  EXPECT_EQ(utilities.runShellScript(script, std::nullopt, 10), Text("only complaints\n"));
}

TEST_F(RunShellScript, HandsOverTheParametersAndTheHomeFolder) {
  tasks.programs[script] = {};
  EXPECT_EQ(utilities.runShellScript(script, std::vector<Text>{"a b", "", "ü"}, 10), Text(""));
  EXPECT_EQ(theTask().arguments, (std::vector<Text>{"a b", "", "ü"}));
  EXPECT_EQ(theTask().workingFolder, searchPaths.home);
}

TEST_F(RunShellScript, NoParametersAndAnEmptyListAreTheSame) {
  tasks.programs[script] = {};
  (void)utilities.runShellScript(script, std::nullopt, 10);
  (void)utilities.runShellScript(script, std::vector<Text>{}, 10);
  ASSERT_EQ(tasks.launched.size(), 2u);
  EXPECT_TRUE(tasks.launched[0]->arguments.empty());
  EXPECT_TRUE(tasks.launched[1]->arguments.empty());
}

TEST_F(RunShellScript, ExpandsALeadingTilde) {
  tasks.programs["/home/anna/bin/report.sh"] = {.output = "found"};
  EXPECT_EQ(utilities.runShellScript("~/bin/report.sh", std::nullopt, 10), Text("found"));
}

TEST_F(RunShellScript, ExpandsATildeBeforeAnAccountsName) {
  tasks.programs["/srv/bert/bin/report.sh"] = {.output = "found"};
  EXPECT_EQ(utilities.runShellScript("~bert/bin/report.sh", std::nullopt, 10), Text("found"));
}

TEST_F(RunShellScript, LooksEveryMillisecond) {
  tasks.programs[script] = {.seconds = 0.0105};
  (void)utilities.runShellScript(script, std::nullopt, 10);
  EXPECT_EQ(clock.slept, std::vector<double>(11, 0.001));
}

TEST_F(RunShellScript, ScriptThatEndsAtOnceIsNotTimedOut) {
  tasks.programs[script] = {.output = "quick"};
  EXPECT_EQ(utilities.runShellScript(script, std::nullopt, 0), Text("quick"));
  EXPECT_TRUE(log.lines().empty());
  EXPECT_TRUE(clock.slept.empty());
  EXPECT_EQ(theTask().terminateRequests, 0);
}

TEST_F(RunShellScript, OverItsLimitIsLoggedEndedAndItsOutputReturned) {
  tasks.programs[script] = {.output = "so far", .seconds = 60};
  EXPECT_EQ(utilities.runShellScript(script, std::vector<Text>{"-v", "a b"}, 2.0), Text("so far"));
  EXPECT_EQ(log.lines(), Lines{R"(script timeout: report.sh ("-v", "a b"))"});
  EXPECT_EQ(theTask().terminateRequests, 1);
  EXPECT_NEAR(clock.monotonicSeconds(), 2.0, 0.0021);
  expectNoTemporaryFileLeft();
}

TEST_F(RunShellScript, TimeoutWithoutParametersNamesNone) {
  tasks.programs[script] = {.seconds = 60};
  (void)utilities.runShellScript(script, std::nullopt, 0.5);
  EXPECT_EQ(log.lines(), Lines{"script timeout: report.sh (null)"});
}

TEST_F(RunShellScript, ThatIgnoresTheRequestIsAskedTwiceAndNotWaitedFor) {
  tasks.programs[script] = {.output = "stubborn", .seconds = 60, .ignoresTerminate = true};
  EXPECT_EQ(utilities.runShellScript(script, std::nullopt, 1.0), Text("stubborn"));
  EXPECT_EQ(theTask().terminateRequests, 2);
  EXPECT_LT(clock.monotonicSeconds(), 1.01);
}

TEST(RunShellScriptWithTickingClock, LimitOfZeroIsOverAtTheFirstLook) {
  TickingClock clock;
  FakeSearchPaths searchPaths;
  FakeTemporaryFiles files;
  FakeTasks tasks(files, clock);
  RecordingLog log;
  KTUtilitiesScripts utilities(tasks, files, searchPaths, clock, log);
  tasks.programs[script] = {.output = "started", .seconds = 60};
  EXPECT_EQ(utilities.runShellScript(script, std::nullopt, 0), Text("started"));
  EXPECT_EQ(log.lines(), Lines{"script timeout: report.sh (null)"});
  EXPECT_TRUE(clock.slept.empty());
}

TEST_F(RunShellScript, ElapsedTimeIsHeldInSinglePrecision) {
  // One millisecond is a little more than 0.001 in single precision, so it is over after the first.
  tasks.programs[script] = {.seconds = 60};
  (void)utilities.runShellScript(script, std::nullopt, 0.001);
  EXPECT_EQ(log.lines().size(), 1u);
  EXPECT_EQ(clock.slept.size(), 1u);
}

TEST_F(RunShellScript, ThatCannotBeStartedFailsWithItsNameAndTheReason) {
  EXPECT_EQ(utilities.runShellScript("/nowhere/missing.sh", std::nullopt, 10),
            Text("script missing.sh failed: No such file or directory"));
  EXPECT_TRUE(log.lines().empty());
}

TEST_F(RunShellScript, ThatCannotBeStartedLeavesItsTemporaryFile) {
  (void)utilities.runShellScript("/nowhere/missing.sh", std::nullopt, 10);
  EXPECT_EQ(files.files.size(), 1u);
}

TEST_F(RunShellScript, WithoutATemporaryFileFailsAndStartsNothing) {
  tasks.programs[script] = {};
  files.isFull = true;
  EXPECT_EQ(utilities.runShellScript(script, std::nullopt, 10),
            Text("script report.sh failed: no temporary file for its output"));
  EXPECT_TRUE(tasks.launched.empty());
}

TEST_F(RunShellScript, OutputThatIsNotUtf8GivesNothing) {
  tasks.programs[script] = {.output = "gr\xFC\xDF"};
  EXPECT_EQ(utilities.runShellScript(script, std::nullopt, 10), std::nullopt);
  expectNoTemporaryFileLeft();
}

using ShellCommandResult = RunShellScript;

TEST_F(ShellCommandResult, IsTheStandardOutputOfTheShell) {
  tasks.programs["/bin/sh"] = {.output = "ö\n", .errorOutput = "not this"};
  EXPECT_EQ(utilities.shellCommandResult("printf %s ö"), Text("ö\n"));
  EXPECT_EQ(theTask().arguments, (std::vector<Text>{"-c", "printf %s ö"}));
}

TEST_F(ShellCommandResult, ThatIsNotUtf8IsNothing) {
  tasks.programs["/bin/sh"] = {.output = "\xFF"};
  EXPECT_EQ(utilities.shellCommandResult("x"), std::nullopt);
}

TEST_F(ShellCommandResult, WithoutAShellIsNothing) {
  EXPECT_EQ(utilities.shellCommandResult("x"), std::nullopt);
}

}  // namespace
}  // namespace halvorn
