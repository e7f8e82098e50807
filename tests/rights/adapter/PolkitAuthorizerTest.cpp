// Administrator rights from a real policy daemon, asked for by somebody who has none.
#include <gtest/gtest.h>
#include <sys/mount.h>
#include <sys/stat.h>

#include <csignal>
#include <filesystem>
#include <fstream>

#include "tests/support/ChildProcess.h"
#include "tests/support/PolkitWorld.h"
#include "tests/support/PrivateMedium.h"

namespace halvorn {
namespace {

namespace fs = std::filesystem;

const std::string programs = KT_BINARY_DIR "/tests/";

struct Attempt {
  std::string output;       // of the program that asked, from "ready" on
  std::string agentOutput;  // empty without an agent
};

class PolkitZoo : public testing::Test {
 protected:
  void SetUp() override {
    if (const auto reason = PolkitWorld::missing()) GTEST_SKIP() << *reason;
  }

  // Makes the world and puts the tools where everybody can run them.
  void inWorld(const PolkitWorldParts& parts = {}) {
    world_ = std::make_unique<PolkitWorld>(parts);
    for (const char* name : {"kt_authorize_probe", "kt_zoo_tool", "kt_polkit_agent"}) {
      fs::copy_file(programs + name, world_->scratchFolder() + "/" + name);
    }
  }

  [[nodiscard]] std::string tool() const { return world_->scratchFolder() + "/kt_zoo_tool"; }

  // Asks for the tool with the words; `agent` is a mode of the agent, "" for none.
  Attempt ask(const std::string& agent, std::vector<std::string> command, const std::string& go = "go") {
    command.insert(command.begin(), world_->scratchFolder() + "/kt_authorize_probe");
    const ChildOptions options{.environment = world_->personsEnvironment()};
    ChildProcess asker(world_->asPerson(command), options);
    EXPECT_TRUE(asker.waitForOutput("ready", kTestPatience));
    std::unique_ptr<ChildProcess> answerer;
    if (!agent.empty()) {
      answerer =
          std::make_unique<ChildProcess>(world_->asPerson({world_->scratchFolder() + "/kt_polkit_agent",
                                                           std::to_string(asker.pid()), agent}),
                                         options);
      EXPECT_TRUE(answerer->waitForOutput("registered", kTestPatience)) << answerer->output();
    }
    asker.writeInput(go + "\n");
    EXPECT_EQ(asker.waitForEnd(kTestPatience), 0) << "it hangs or crashed: " << asker.output();
    if (answerer) answerer->end();
    return {asker.output(), answerer ? answerer->output() : ""};
  }

  static bool contains(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
  }

  std::unique_ptr<PolkitWorld> world_;
};

TEST_F(PolkitZoo, TheRightPasswordRunsTheToolAsAdministratorForThePerson) {
  inWorld();
  const Attempt attempt = ask("right", {tool(), "identity"});
  EXPECT_TRUE(contains(attempt.agentOutput, "asked: org.freedesktop.policykit.exec")) << attempt.agentOutput;
  EXPECT_EQ(attempt.output, "ready\nanswer: granted\ntool: uid 0, for 64101\nend: exited 0\n");
}

TEST_F(PolkitZoo, ADismissedDialogIsCanceled) {
  inWorld();
  EXPECT_EQ(ask("cancel", {tool()}).output,
            "ready\nlog: No administrator rights: the request was dismissed\nanswer: canceled\n");
}

TEST_F(PolkitZoo, TheWrongPasswordIsRefused) {
  inWorld();
  const Attempt attempt = ask("wrong", {tool()});
  EXPECT_TRUE(contains(attempt.agentOutput, "attempt 3: not accepted")) << attempt.agentOutput;
  EXPECT_EQ(attempt.output,
            "ready\nlog: No administrator rights: not authenticated, the password was not accepted\n"
            "answer: refused\n");
}

TEST_F(PolkitZoo, AnAgentThatVanishesIsRefused) {
  inWorld();
  EXPECT_EQ(ask("vanish", {tool()}).output,
            "ready\nlog: No administrator rights: not authenticated, the password was not accepted\n"
            "answer: refused\n");
}

TEST_F(PolkitZoo, ARefusingRuleIsRefusedWithoutADialog) {
  inWorld({.rules = PolkitWorld::ruleAnswering("NO")});
  const Attempt attempt = ask("right", {tool()});
  EXPECT_FALSE(contains(attempt.agentOutput, "asked:"));
  EXPECT_EQ(attempt.output,
            "ready\nlog: No administrator rights: the policy of this system refuses them\nanswer: refused\n");
}

TEST_F(PolkitZoo, AGrantingRuleNeedsNoAgent) {
  inWorld({.rules = PolkitWorld::ruleAnswering("YES")});
  EXPECT_EQ(ask("", {tool()}).output, "ready\nanswer: granted\nend: exited 0\n");
}

TEST_F(PolkitZoo, NoAgentIsRefused) {
  inWorld();
  const std::string output = ask("", {tool()}).output;
  EXPECT_TRUE(
      contains(output, "log: No administrator rights: no authentication agent runs in this session ("))
      << output;
  EXPECT_TRUE(contains(output, "\nanswer: refused\n")) << output;
}

TEST_F(PolkitZoo, NoPolicyDaemonIsRefused) {
  inWorld({.policyDaemon = false});
  const std::string output = ask("", {tool()}).output;
  EXPECT_TRUE(contains(output, "log: No administrator rights: the policy daemon does not answer ("))
      << output;
  EXPECT_TRUE(contains(output, "\nanswer: refused\n")) << output;
}

TEST_F(PolkitZoo, NoSystemBusIsRefused) {
  inWorld({.bus = false});
  const std::string output = ask("", {tool()}).output;
  EXPECT_TRUE(contains(output, "log: No administrator rights: the system bus does not answer (")) << output;
  EXPECT_TRUE(contains(output, "\nanswer: refused\n")) << output;
}

TEST_F(PolkitZoo, NoPkexecIsRefused) {
  inWorld();
  EXPECT_EQ(ask("", {tool()}, "without-pkexec").output,
            "ready\nlog: No administrator rights: this system has no pkexec\nanswer: refused\n");
}

// In a sandbox that takes the rights of set-user-id programs away.
TEST_F(PolkitZoo, APkexecWithoutRightsIsRefused) {
  inWorld();
  world_->mount("/usr", "/usr", "none", MS_BIND | MS_REC, "");
  world_->mount("none", "/usr", "none", MS_REMOUNT | MS_BIND | MS_NOSUID, "");
  const std::string output = ask("", {tool()}).output;
  EXPECT_TRUE(contains(output, "log: No administrator rights: pkexec has no rights itself here (")) << output;
  EXPECT_TRUE(contains(output, "\nanswer: refused\n")) << output;
}

TEST_F(PolkitZoo, AMissingToolIsNotStartedAndNobodyIsAsked) {
  inWorld();
  const Attempt attempt = ask("right", {"/opt/nothing-here/train"});
  EXPECT_FALSE(contains(attempt.agentOutput, "asked:"));
  EXPECT_EQ(
      attempt.output,
      "ready\nlog: The administrator's tool '/opt/nothing-here/train' is missing: No such file or directory\n"
      "answer: granted\nend: not started 2\n");
}

TEST_F(PolkitZoo, WordsThatTheDialogWouldNotShowAsTheyAreAreNotAskedFor) {
  inWorld();
  const std::vector<std::pair<std::string, std::string>> wordsAndReasons = {
      {"/media/Foo\u202Egnp.app", "'/media/Foo\\u{202E}gnp.app' would be shown as another"},
      {"/media/Foo.app\nAll is well", "'/media/Foo.app\\nAll is well' would be shown as another"},
      {"/media/" + std::string(1000, 'o'), "its paths are longer than a dialog shows"}};
  for (const auto& [word, reason] : wordsAndReasons) {
    const Attempt attempt = ask("right", {tool(), word, "/opt/Foo.app"});
    EXPECT_FALSE(contains(attempt.agentOutput, "asked:")) << attempt.agentOutput;
    EXPECT_EQ(attempt.output, "ready\nlog: The administrator's tool is not asked for: " + reason +
                                  "\nanswer: granted\nend: not started 22\n");
  }
}

TEST_F(PolkitZoo, AToolThatIsNotExecutableIsNotStartedAndNobodyIsAsked) {
  inWorld();
  fs::permissions(tool(), fs::perms::owner_read | fs::perms::group_read | fs::perms::others_read);
  const Attempt attempt = ask("right", {tool()});
  EXPECT_FALSE(contains(attempt.agentOutput, "asked:"));
  EXPECT_EQ(attempt.output, "ready\nlog: The administrator's tool '" + tool() +
                                "' is not executable\nanswer: granted\nend: not started 13\n");
}

TEST_F(PolkitZoo, AMediumMountedNoexecIsNotStartedAndNobodyIsAsked) {
  inWorld();
  const std::string medium = world_->scratchFolder() + "/medium";
  fs::create_directory(medium);
  world_->mount("tmpfs", medium, "tmpfs", MS_NOEXEC, "mode=755");
  fs::copy_file(tool(), medium + "/train");
  const Attempt attempt = ask("right", {medium + "/train"});
  EXPECT_FALSE(contains(attempt.agentOutput, "asked:"));
  EXPECT_EQ(attempt.output, "ready\nlog: The administrator's tool '" + medium +
                                "/train' cannot run: its medium is mounted noexec\n"
                                "answer: granted\nend: not started 13\n");
}

// The administrator can neither read nor run what lies there.
TEST_F(PolkitZoo, AMediumThatOnlyThePersonCanReadIsNotStartedAndNobodyIsAsked) {
  if (const auto reason = PrivateMedium::missing()) GTEST_SKIP() << *reason;
  inWorld();
  const std::string folder = world_->scratchFolder() + "/medium";
  fs::create_directory(folder);
  const PrivateMedium medium(folder, PolkitWorld::personId, {{"train", "#!/bin/sh\nexit 0\n"}});
  ASSERT_EQ(runCommand(world_->asPerson({"cat", folder + "/train"})).output, "#!/bin/sh\nexit 0\n");
  ASSERT_NE(runCommand({"cat", folder + "/train"}).status, 0) << "root reads it";
  const Attempt attempt = ask("right", {folder + "/train"});
  EXPECT_FALSE(contains(attempt.agentOutput, "asked:"));
  EXPECT_EQ(attempt.output, "ready\nlog: The administrator's tool '" + folder +
                                "/train' cannot run: its medium (FUSE) is closed to the administrator\n"
                                "answer: granted\nend: not started 13\n");
}

TEST_F(PolkitZoo, AToolThatTheSystemCannotStartIsNotStarted) {
  inWorld({.rules = PolkitWorld::ruleAnswering("YES")});
  const std::string nonsense = world_->scratchFolder() + "/nonsense";
  std::ofstream(nonsense, std::ios::binary) << std::string(
      "\x7f"
      "ELF and nothing else",
      20);
  fs::permissions(nonsense, fs::perms(0755));
  const std::string output = ask("", {nonsense}).output;
  EXPECT_TRUE(contains(output, "log: The administrator's tool could not be started (")) << output;
  EXPECT_TRUE(contains(output, "answer: granted\nend: not started 8\n")) << output;
}

TEST_F(PolkitZoo, TheStatusOfTheToolComesBack) {
  inWorld({.rules = PolkitWorld::ruleAnswering("YES")});
  for (const char* status : {"1", "2", "3", "42"}) {
    EXPECT_EQ(ask("", {tool(), "exit", status}).output,
              std::string("ready\nanswer: granted\nlog: The administrator's tool ended with status ") +
                  status + "\nend: exited " + status + "\n");
  }
}

TEST_F(PolkitZoo, AToolKilledByASignalDied) {
  inWorld({.rules = PolkitWorld::ruleAnswering("YES")});
  for (const int signal : {SIGKILL, SIGSEGV, SIGTERM}) {
    const std::string number = std::to_string(signal);
    EXPECT_EQ(ask("", {tool(), "signal", number}).output,
              "ready\nanswer: granted\nlog: The administrator's tool was ended by signal " + number +
                  "\nend: died " + number + "\n");
  }
}

// pkexec's own statuses: the name that the process ended under tells them apart.
TEST_F(PolkitZoo, AToolThatEndsLikePkexecIsNotMistakenForIt) {
  inWorld({.rules = PolkitWorld::ruleAnswering("YES")});
  for (const char* status : {"126", "127"}) {
    const std::string output = ask("", {tool(), "exit-unannounced", status}).output;
    EXPECT_EQ(output,
              std::string("ready\nanswer: granted\nlog: The administrator's tool ended with status ") +
                  status + "\nend: exited " + status + "\n");
  }
}

TEST_F(PolkitZoo, WhatTheToolSaysAppearsLineByLineEvenWithoutALastLineEnd) {
  inWorld({.rules = PolkitWorld::ruleAnswering("YES")});
  EXPECT_EQ(ask("", {tool(), "say", "one|tool: two"}).output,
            "ready\nanswer: granted\ntool: one\ntool: two\nend: exited 0\n");
}

TEST_F(PolkitZoo, HowMuchTheToolHasCopiedIsToldAndNotPassedOn) {
  inWorld({.rules = PolkitWorld::ruleAnswering("YES")});
  EXPECT_EQ(ask("", {tool(), "say", "one|copied 4194304|tool: two|copied 5x|"}).output,
            "ready\nanswer: granted\ntool: one\ncopied: 4194304\ntool: two\ncopied 5x\nend: exited 0\n");
}

// The window shows progress again as soon as the tool runs, not when it is done.
TEST_F(PolkitZoo, GrantedIsAnsweredWhileTheToolStillRuns) {
  inWorld({.rules = PolkitWorld::ruleAnswering("YES")});
  const std::string sign = world_->scratchFolder() + "/sign";
  ChildProcess asker(
      world_->asPerson({world_->scratchFolder() + "/kt_authorize_probe", tool(), "wait", sign}),
      {.environment = world_->personsEnvironment()});
  ASSERT_TRUE(asker.waitForOutput("ready", kTestPatience));
  asker.writeInput("go\n");
  EXPECT_TRUE(asker.waitForOutput("answer: granted", kTestPatience));
  EXPECT_TRUE(asker.isRunning());
  EXPECT_EQ(asker.output(), "ready\nanswer: granted\n");
  std::ofstream(sign) << "end";
  EXPECT_EQ(asker.waitForEnd(kTestPatience), 0);
  EXPECT_EQ(asker.output(), "ready\nanswer: granted\nend: exited 0\n");
}

// Half a copy helps nobody: what the administrator's tool has begun it finishes.
TEST_F(PolkitZoo, TheToolOutlivesTheProgramThatAsked) {
  inWorld({.rules = PolkitWorld::ruleAnswering("YES")});
  const std::string sign = world_->scratchFolder() + "/sign";
  const std::string done = world_->scratchFolder() + "/done";
  const std::string script = world_->scratchFolder() + "/script";
  std::ofstream(script) << "#!/bin/sh\n" << tool() << " wait " << sign << "\ntouch " << done << "\n";
  fs::permissions(script, fs::perms(0755));
  ChildProcess asker(world_->asPerson({world_->scratchFolder() + "/kt_authorize_probe", script}),
                     {.environment = world_->personsEnvironment()});
  ASSERT_TRUE(asker.waitForOutput("ready", kTestPatience));
  asker.writeInput("go\n");
  ASSERT_TRUE(asker.waitForOutput("answer: granted", kTestPatience));
  EXPECT_EQ(asker.end(SIGKILL), -SIGKILL);
  std::ofstream(sign) << "end";
  EXPECT_TRUE(eventually([&] { return fs::exists(done); }, kTestPatience));
}

}  // namespace
}  // namespace halvorn
