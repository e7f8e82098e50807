#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "Platform/processes/linux/proc/ProcFiles.h"

namespace halvorn {
namespace {

std::string statLine(const std::string& name) {
  return "4711 (" + name + ") S 1 2 3 0 -1 4194304 10 0 0 0 627 37 0 0 20 0 1 0 382453 485249024 1 0\n";
}

TEST(ProcStat, FieldsAreCountedAfterTheLastParenthesisWhateverTheNameHolds) {
  for (const std::string name :
       {"plain", "two words", "a) R 1 1 1", "((", "line\nfeed", ")", "", "\xFF\xFE"}) {
    const auto stat = parseProcStat(statLine(name));
    ASSERT_TRUE(stat) << name;
    EXPECT_EQ(stat->name, name);
    EXPECT_EQ(stat->state, 'S');
    EXPECT_EQ(stat->userTicks, 627u);
    EXPECT_EQ(stat->startTicks, 382453u);
  }
}

TEST(ProcStat, WhatIsCutOffOrNoNumberIsNothing) {
  const std::string line = statLine("x");
  for (const std::string& content :
       {std::string(), std::string("4711"), std::string("4711 (x"), line.substr(0, 30),
        std::string("1 ) ( S 1 2 3"), std::string("1 (x) S 1 2 3 0 -1 4 1 0 0 0 x y 0 0 2 0 1 0 z 4")}) {
    EXPECT_FALSE(parseProcStat(content)) << content;
  }
}

TEST(ProcStatus, UsersAndNamespaceIdsAreRead) {
  const auto status =
      parseProcStatus("Name:\tx\\nUid:\t0\t0\nState:\tS\nUid:\t1000\t1001\t3\t4\nNSpid:\t4711\t2\n");
  ASSERT_TRUE(status);
  EXPECT_EQ(status->realUser, 1000u);
  EXPECT_EQ(status->effectiveUser, 1001u);
  EXPECT_EQ(status->namespacePids, (std::vector<pid_t>{4711, 2}));
  EXPECT_FALSE(parseProcStatus("Name:\tx\n"));
  EXPECT_FALSE(parseProcStatus("Uid:\tx\ty\n"));
}

}  // namespace
}  // namespace halvorn
