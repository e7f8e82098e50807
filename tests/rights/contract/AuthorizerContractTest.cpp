// What every authorizer owes the core.
#include <gtest/gtest.h>

#include <csignal>

#include "tests/rights/contract/AuthorizerBenches.h"

namespace halvorn {
namespace {

class AuthorizerContract : public testing::TestWithParam<NamedBench> {
 protected:
  void SetUp() override {
    if (const auto reason = GetParam().missing()) GTEST_SKIP() << *reason;
    bench_ = GetParam().make();
  }
  std::unique_ptr<Bench> bench_;
};

INSTANTIATE_TEST_SUITE_P(Authorizers, AuthorizerContract, testing::ValuesIn(benches()),
                         [](const auto& bench) { return bench.param.name; });

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

}  // namespace
}  // namespace halvorn
