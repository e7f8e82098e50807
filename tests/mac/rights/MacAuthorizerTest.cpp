// What is asked of the system's authorization services, and what becomes of its statuses.
#include "Platform/rights/mac/MacAuthorizer.h"

#include <sys/wait.h>

#include <csignal>
#include <fstream>
#include <sstream>

#include "tests/mac/MacTest.h"
#include "tests/support/TemporaryFolder.h"

namespace halvorn {
namespace {

using MacAuthorizerTest = MacTest;

TEST_F(MacAuthorizerTest, OneRightIsAskedForWithTheDialogAllowed) {
  MacAuthorizer authorizer;
  EXPECT_EQ(authorizer.requestAdministratorRights("/bin/true", {}).answer, AuthorizationAnswer::Granted);
  ASSERT_EQ(fakemac::state().rightsAsked.size(), 1U);
  EXPECT_EQ(fakemac::state().rightsAsked[0].first, "system.privilege.admin");
  EXPECT_EQ(fakemac::state().rightsAsked[0].second, 19U);
}

TEST_F(MacAuthorizerTest, EveryStatusButThePersonsCancelIsARefusal) {
  const struct {
    std::int32_t status;
    AuthorizationAnswer answer;
    const char* reason;
  } cases[] = {{-60006, AuthorizationAnswer::Canceled, "the person's cancel"},
               {-60005, AuthorizationAnswer::Refused, "denied"},
               {-60007, AuthorizationAnswer::Refused, "no dialog possible"},
               {-60008, AuthorizationAnswer::Refused, "internal"},
               {1, AuthorizationAnswer::Refused, "anything else"}};
  for (const auto& [status, answer, reason] : cases) {
    fakemac::state().authorizationAnswer = status;
    const auto result = MacAuthorizer().requestAdministratorRights("/bin/true", {});
    EXPECT_EQ(result.answer, answer) << reason;
    EXPECT_EQ(result.authorization, nullptr) << reason;
    EXPECT_EQ(fakemac::liveObjects(), 0) << reason;
  }
}

TEST_F(MacAuthorizerTest, WithoutAnAuthorizationNothingIsAsked) {
  fakemac::state().authorizationCreation = -60008;
  EXPECT_EQ(MacAuthorizer().requestAdministratorRights("/bin/true", {}).answer, AuthorizationAnswer::Refused);
  EXPECT_TRUE(fakemac::state().rightsAsked.empty());
}

TEST_F(MacAuthorizerTest, ArgumentsArriveAsTheBytesTheyAre) {
  const TemporaryFolder folder;
  const std::string file = folder / "out";
  MacAuthorizer authorizer;
  const auto result = authorizer.requestAdministratorRights(
      "/bin/sh",
      {"-c", "printf '%s|' \"$@\" > '" + file + "'", "tool", "/A/Ü \xFF.app", "", "two words", "***"});
  ASSERT_NE(result.authorization, nullptr);
  const ToolEnd end = result.authorization->run();
  ASSERT_TRUE(std::holds_alternative<ToolExited>(end));
  EXPECT_EQ(std::get<ToolExited>(end).status, 0);
  std::ostringstream written;
  written << std::ifstream(file).rdbuf();
  EXPECT_EQ(written.str(), "/A/Ü \xFF.app||two words|***|");
}

TEST_F(MacAuthorizerTest, AToolThatIsNotThereHasTheSystemsStatus) {
  MacAuthorizer authorizer;
  const auto result = authorizer.requestAdministratorRights("", {});
  ASSERT_NE(result.authorization, nullptr);
  const ToolEnd end = result.authorization->run();
  ASSERT_TRUE(std::holds_alternative<ToolNotStarted>(end));
  EXPECT_EQ(std::get<ToolNotStarted>(end).status, -60031);
}

TEST_F(MacAuthorizerTest, AnEndThatSomebodyElseTookIsUnknown) {
  // Children that nobody waits for leave no status.
  const auto before = std::signal(SIGCHLD, SIG_IGN);
  MacAuthorizer authorizer;
  const auto result = authorizer.requestAdministratorRights("/bin/true", {});
  EXPECT_TRUE(std::holds_alternative<ToolUnknown>(result.authorization->run()));
  std::signal(SIGCHLD, before);
}

TEST_F(MacAuthorizerTest, OnceWithdrawnNobodyIsAskedAndAnAnswerThatComesLateCounts) {
  MacAuthorizer authorizer;
  fakemac::state().onRightsAsked = [&] { authorizer.withdraw(); };
  const auto late = authorizer.requestAdministratorRights("/bin/true", {});
  EXPECT_EQ(late.answer, AuthorizationAnswer::Canceled);
  EXPECT_EQ(late.authorization, nullptr);
  EXPECT_EQ(authorizer.requestAdministratorRights("/bin/true", {}).answer, AuthorizationAnswer::Canceled);
  EXPECT_EQ(fakemac::state().rightsAsked.size(), 1U);
}

}  // namespace
}  // namespace halvorn
