// The fake authorizer, and the one on a real policy daemon.
#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>

#include "tests/fakes/FakeAuthorizer.h"
#include "tests/rights/contract/AuthorizerBenches.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/PolkitWorld.h"

namespace halvorn {
namespace {

namespace fs = std::filesystem;

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

TEST(FakeAuthorizer, OnceWithdrawnAnswersCanceledWithoutAsking) {
  FakeAuthorizer authorizer;
  authorizer.withdraw();
  EXPECT_EQ(authorizer.requestAdministratorRights("/tool", {}).answer, AuthorizationAnswer::Canceled);
  EXPECT_TRUE(authorizer.requests.empty());
}

std::optional<std::string> nothing() { return std::nullopt; }
template <typename Made>
std::unique_ptr<Bench> make() {
  return std::make_unique<Made>();
}

}  // namespace

const std::vector<NamedBench>& benches() {
  static const std::vector<NamedBench> all = {{"Fake", nothing, make<FakeBench>},
                                              {"Polkit", PolkitWorld::missing, make<PolkitBench>}};
  return all;
}

}  // namespace halvorn
