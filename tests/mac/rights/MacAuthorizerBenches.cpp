// The authorizer of macOS, with a person that a test makes up and a tool that really runs.
#include <gtest/gtest.h>

#include "Platform/rights/mac/MacAuthorizer.h"
#include "tests/mac/frameworks/FakeMac.h"
#include "tests/rights/contract/AuthorizerBenches.h"

namespace halvorn {
namespace {

class MacBench : public Bench {
 public:
  Outcome ask(const Circumstances& circumstances) override {
    fakemac::reset();
    constexpr std::int32_t kAnswers[] = {0, -60006, -60005};
    fakemac::state().authorizationAnswer = kAnswers[static_cast<int>(circumstances.answer)];
    Outcome outcome;
    {
      MacAuthorizer authorizer;
      const auto result =
          authorizer.requestAdministratorRights(toolFor(circumstances.end), argumentsFor(circumstances.end));
      outcome = {.answer = result.answer, .hasAuthorization = result.authorization != nullptr};
      if (result.authorization) outcome.end = result.authorization->run();
    }
    EXPECT_EQ(fakemac::liveObjects(), 0);
    return outcome;
  }

 private:
  static Text toolFor(const ToolEnd& end) {
    return std::holds_alternative<ToolNotStarted>(end) ? "/nonexistent/tool" : "/bin/sh";
  }
  static std::vector<Text> argumentsFor(const ToolEnd& end) {
    if (const auto* exited = std::get_if<ToolExited>(&end))
      return {"-c", "exit " + std::to_string(exited->status)};
    if (const auto* died = std::get_if<ToolDied>(&end))
      return {"-c", "kill -" + std::to_string(died->signal) + " $$"};
    return {};
  }
};

std::optional<std::string> nothing() { return std::nullopt; }
std::unique_ptr<Bench> makeMacBench() { return std::make_unique<MacBench>(); }

}  // namespace

const std::vector<NamedBench>& benches() {
  static const std::vector<NamedBench> all = {{"Mac", nothing, makeMacBench}};
  return all;
}

}  // namespace halvorn
