// What every authorizer owes the core: the fake one and the one on a real policy daemon.
#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>
#include <sstream>

#include "tests/fakes/FakeAuthorizer.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/PolkitWorld.h"

namespace halvorn {
namespace {

namespace fs = std::filesystem;

// How the person answers, and what the tool then does.
struct Circumstances {
  AuthorizationAnswer answer = AuthorizationAnswer::Granted;
  ToolEnd end = ToolExited{0};
};

class Bench {
 public:
  virtual ~Bench() = default;
  struct Outcome {
    AuthorizationAnswer answer = AuthorizationAnswer::Refused;
    bool hasAuthorization = false;
    std::optional<ToolEnd> end = std::nullopt;
  };
  virtual Outcome ask(const Circumstances& circumstances) = 0;
};

class FakeBench : public Bench {
 public:
  Outcome ask(const Circumstances& circumstances) override {
    FakeAuthorizer authorizer;
    authorizer.answer = circumstances.answer;
    authorizer.end = circumstances.end;
    const auto result = authorizer.requestAdministratorRights("/tool", {"argument"});
    Outcome outcome{.answer = result.answer, .hasAuthorization = result.authorization != nullptr};
    if (result.authorization) outcome.end = result.authorization->run();
    return outcome;
  }
};

// The asking program runs as somebody without rights, so it is another process;
// it prints what it was answered.
class PolkitBench : public Bench {
 public:
  PolkitBench() {
    for (const char* name : {"kt_authorize_probe", "kt_zoo_tool", "kt_polkit_agent"}) {
      fs::copy_file(std::string(KT_BINARY_DIR "/tests/") + name, at(name));
    }
  }

  Outcome ask(const Circumstances& circumstances) override {
    std::vector<std::string> command{at("kt_authorize_probe")};
    for (const std::string& word : toolFor(circumstances.end)) command.push_back(word);
    const ChildOptions options{.environment = world_.personsEnvironment()};
    ChildProcess asker(world_.asPerson(command), options);
    EXPECT_TRUE(asker.waitForOutput("ready", kTestPatience));
    ChildProcess agent(
        world_.asPerson({at("kt_polkit_agent"), std::to_string(asker.pid()), modeFor(circumstances.answer)}),
        options);
    EXPECT_TRUE(agent.waitForOutput("registered", kTestPatience)) << agent.output();
    asker.writeInput("go\n");
    EXPECT_EQ(asker.waitForEnd(kTestPatience), 0) << asker.output();
    return parsed(asker.output());
  }

 private:
  [[nodiscard]] std::string at(const std::string& name) const { return world_.scratchFolder() + "/" + name; }

  static std::string modeFor(AuthorizationAnswer answer) {
    switch (answer) {
      case AuthorizationAnswer::Granted:
        return "right";
      case AuthorizationAnswer::Canceled:
        return "cancel";
      case AuthorizationAnswer::Refused:
        return "wrong";
    }
    return "";
  }

  [[nodiscard]] std::vector<std::string> toolFor(const ToolEnd& end) const {
    if (const auto* exited = std::get_if<ToolExited>(&end))
      return {at("kt_zoo_tool"), "exit", std::to_string(exited->status)};
    if (const auto* died = std::get_if<ToolDied>(&end))
      return {at("kt_zoo_tool"), "signal", std::to_string(died->signal)};
    return {at("nothing")};
  }

  static Outcome parsed(const std::string& text) {
    Outcome outcome;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
      if (line == "answer: granted") {
        outcome.answer = AuthorizationAnswer::Granted;
        outcome.hasAuthorization = true;
      }
      if (line == "answer: canceled") outcome.answer = AuthorizationAnswer::Canceled;
      const auto number = [&](const std::string& start) { return std::stoi(line.substr(start.size())); };
      if (line.starts_with("end: exited ")) outcome.end = ToolExited{number("end: exited ")};
      if (line.starts_with("end: died ")) outcome.end = ToolDied{number("end: died ")};
      if (line.starts_with("end: not started ")) outcome.end = ToolNotStarted{number("end: not started ")};
    }
    return outcome;
  }

  PolkitWorld world_;
};

enum class Kind { Fake, Polkit };

class AuthorizerContract : public testing::TestWithParam<Kind> {
 protected:
  void SetUp() override {
    if (GetParam() == Kind::Fake) {
      bench_ = std::make_unique<FakeBench>();
      return;
    }
    if (const auto reason = PolkitWorld::missing()) GTEST_SKIP() << *reason;
    bench_ = std::make_unique<PolkitBench>();
  }
  std::unique_ptr<Bench> bench_;
};

INSTANTIATE_TEST_SUITE_P(Authorizers, AuthorizerContract, testing::Values(Kind::Fake, Kind::Polkit),
                         [](const auto& kind) { return kind.param == Kind::Fake ? "Fake" : "Polkit"; });

TEST_P(AuthorizerContract, GrantedRightsRunTheToolAndTellItsStatus) {
  for (const int status : {0, 1, 2, 3, 100}) {
    const auto outcome = bench_->ask({.end = ToolExited{status}});
    EXPECT_EQ(outcome.answer, AuthorizationAnswer::Granted);
    ASSERT_TRUE(outcome.end && std::holds_alternative<ToolExited>(*outcome.end));
    EXPECT_EQ(std::get<ToolExited>(*outcome.end).status, status);
  }
}

TEST_P(AuthorizerContract, AToolKilledByASignalIsToldApart) {
  const auto outcome = bench_->ask({.end = ToolDied{SIGKILL}});
  EXPECT_EQ(outcome.answer, AuthorizationAnswer::Granted);
  ASSERT_TRUE(outcome.end && std::holds_alternative<ToolDied>(*outcome.end));
  EXPECT_EQ(std::get<ToolDied>(*outcome.end).signal, SIGKILL);
}

TEST_P(AuthorizerContract, AToolThatCannotBeStartedHasAStatusThatIsNotZero) {
  const auto outcome = bench_->ask({.end = ToolNotStarted{2}});
  EXPECT_EQ(outcome.answer, AuthorizationAnswer::Granted);
  ASSERT_TRUE(outcome.end && std::holds_alternative<ToolNotStarted>(*outcome.end));
  EXPECT_NE(std::get<ToolNotStarted>(*outcome.end).status, 0);
}

TEST_P(AuthorizerContract, CanceledAndRefusedAreDifferentAnswersWithoutAnAuthorization) {
  for (const auto answer : {AuthorizationAnswer::Canceled, AuthorizationAnswer::Refused}) {
    const auto outcome = bench_->ask({.answer = answer});
    EXPECT_EQ(outcome.answer, answer);
    EXPECT_FALSE(outcome.hasAuthorization);
    EXPECT_FALSE(outcome.end);
  }
}

TEST(FakeAuthorizer, OnceWithdrawnAnswersCanceledWithoutAsking) {
  FakeAuthorizer authorizer;
  authorizer.withdraw();
  EXPECT_EQ(authorizer.requestAdministratorRights("/tool", {}).answer, AuthorizationAnswer::Canceled);
  EXPECT_TRUE(authorizer.requests.empty());
}

}  // namespace
}  // namespace halvorn
