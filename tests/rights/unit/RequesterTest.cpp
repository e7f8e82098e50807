// For whom a program with the administrator's rights works: one answer for all who ask.
// Why: docs/decisions/028-for-whom-a-program-works.md
#include "Platform/rights/posix/Requester.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <map>

#include "Platform/rights/posix/Person.h"

namespace halvorn {
namespace {

using Variables = std::map<std::string, std::string>;

VariableLookup in(const Variables& variables) {
  return [&variables](const std::string& name) -> std::optional<std::string> {
    const auto found = variables.find(name);
    return found != variables.end() ? std::optional(found->second) : std::nullopt;
  };
}

constexpr uid_t kNobody = 65534;  // has an account everywhere

TEST(Requester, TheFirstWhoIsNotTheAdministratorIsTheOneWhoAsked) {
  using Kind = Requester::Kind;
  const struct {
    Variables variables;
    Kind kind;
    const char* why;
  } cases[] = {
      {{}, Kind::Nobody, "no variable"},
      {{{"USER", "nobody"}, {"SUDO_USER", "nobody"}}, Kind::Nobody, "names are not asked"},
      {{{"PKEXEC_UID", "65534"}}, Kind::Somebody, "pkexec"},
      {{{"SUDO_UID", "65534"}}, Kind::Somebody, "sudo"},
      {{{"PKEXEC_UID", "0"}}, Kind::Nobody, "the administrator works for himself"},
      {{{"SUDO_UID", "00"}}, Kind::Nobody, "a number, however it is written"},
      {{{"PKEXEC_UID", "0"}, {"SUDO_UID", "65534"}}, Kind::Somebody, "pkexec within sudo"},
      {{{"PKEXEC_UID", "65534"}, {"SUDO_UID", "0"}}, Kind::Somebody, "sudo within pkexec"},
      {{{"PKEXEC_UID", "65534"}, {"SUDO_UID", "x"}}, Kind::Somebody, "the first is enough"},
      {{{"PKEXEC_UID", "0"}, {"SUDO_UID", "x"}}, Kind::Unknown, "the second counts then"},
      {{{"PKEXEC_UID", "x"}, {"SUDO_UID", "65534"}}, Kind::Unknown, "the first counts"},
      {{{"PKEXEC_UID", ""}}, Kind::Unknown, "empty"},
      {{{"SUDO_UID", ""}}, Kind::Unknown, "empty"},
      {{{"PKEXEC_UID", "-1"}}, Kind::Unknown, "a sign"},
      {{{"PKEXEC_UID", " 65534"}}, Kind::Unknown, "a blank"},
      {{{"PKEXEC_UID", "65534x"}}, Kind::Unknown, "a rest"},
      {{{"PKEXEC_UID", "4294967296"}}, Kind::Unknown, "too large"},
      {{{"PKEXEC_UID", "4000000000"}}, Kind::Unknown, "no account"},
  };
  for (const auto& [variables, kind, why] : cases) {
    const Requester requester = RequesterVariables::requesterNamedBy(in(variables));
    EXPECT_EQ(requester.kind, kind) << why;
    EXPECT_EQ(requester.account.has_value(), kind == Kind::Somebody) << why;
    if (requester.account) {
      EXPECT_EQ(requester.account->uid, kNobody) << why;
    }
  }
}

TEST(Requester, WhoeverIsNamedIsSeenBeforeAnyAccountIsLookedUp) {
  const Variables others{{"USER", "x"}, {"HOME", "/x"}};
  EXPECT_FALSE(RequesterVariables::nameAnybody(in(others)));
  for (const char* value : {"65534", "0", "", "x"}) {
    const Variables pkexec{{"PKEXEC_UID", value}};
    const Variables sudo{{"SUDO_UID", value}};
    EXPECT_TRUE(RequesterVariables::nameAnybody(in(pkexec))) << value;
    EXPECT_TRUE(RequesterVariables::nameAnybody(in(sudo))) << value;
  }
}

TEST(Requester, VariablesCountOnlyWithTheAdministratorsRights) {
  const Variables variables{{"PKEXEC_UID", "65534"}};
  const Requester requester = requesterOfThisProcess(in(variables));
  EXPECT_EQ(requester.kind, ::geteuid() == 0 ? Requester::Kind::Somebody : Requester::Kind::Nobody);
}

TEST(Person, OfAnAccountHasItsFoldersAndAllItsGroups) {
  const auto account = accountWithUid(kNobody);
  ASSERT_TRUE(account);
  const Person person = personOf(*account);
  EXPECT_EQ(person.user, kNobody);
  EXPECT_EQ(person.group, account->gid);
  EXPECT_EQ(person.home, account->home);
  EXPECT_EQ(person.dataFolder, account->home + "/.local/share");
  EXPECT_NE(std::find(person.groups.begin(), person.groups.end(), account->gid), person.groups.end());
}

TEST(Person, HasNoFolderWhereTheAccountNamesNone) {
  for (const char* home : {"", "relative"}) {
    const Person person =
        personOf({.uid = kNobody, .gid = kNobody, .name = "nobody", .home = home, .shell = {}});
    EXPECT_EQ(person.home, "") << home;
    EXPECT_EQ(person.dataFolder, "") << home;
  }
}

}  // namespace
}  // namespace halvorn
