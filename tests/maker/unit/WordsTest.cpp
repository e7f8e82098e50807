#include "tools/halvorn/Words.h"

#include <gtest/gtest.h>

#include "tests/support/TextPrinting.h"

namespace halvorn {
namespace {

using Texts = std::vector<Text>;

const Grammar kImage{.flags = {"--inside"}, .options = {"--output", "--read-me"}};
const Grammar kPlan{.flags = {"--json"}, .options = {"--installer"}, .takesInstallersWords = true};

TEST(Words, OptionsStandAnywhereAmongPlainWords) {
  const Words words = sortedWords({"--inside", "Foo.app", "-o", "Foo.iso", "--read-me", "R"}, kImage);
  EXPECT_EQ(words.plain, Texts{"Foo.app"});
  EXPECT_TRUE(words.has("--inside"));
  EXPECT_EQ(words.value("--output"), Text("Foo.iso"));
  EXPECT_EQ(words.value("--read-me"), Text("R"));
  EXPECT_EQ(words.misused, Text());
}

TEST(Words, TheInstallersOwnPassThroughAsTheyStand) {
  const Words words =
      sortedWords({"-sourcePath", "/x", "--installer", "/i", "-quitCode", "A", "B", "-o"}, kPlan);
  EXPECT_EQ(words.plain, (Texts{"-sourcePath", "/x", "-quitCode", "A", "B", "-o"}));
  EXPECT_EQ(words.value("--installer"), Text("/i"));
}

TEST(Words, WhatTheGrammarDoesNotKnowIsNamed) {
  EXPECT_EQ(sortedWords({"--nothing"}, kImage).misused, Text("--nothing"));
  EXPECT_EQ(sortedWords({"-sourcePath", "/x"}, kImage).misused, Text("-sourcePath"));
  EXPECT_EQ(sortedWords({"--read-me"}, kImage).misused, Text("--read-me")) << "a value is missing";
}

TEST(Words, BehindTwoHyphensThereIsNoOption) {
  EXPECT_EQ(sortedWords({"--", "--inside", "-x"}, kImage).plain, (Texts{"--inside", "-x"}));
  EXPECT_EQ(sortedWords({"-"}, kImage).plain, Texts{"-"}) << "nor is one hyphen alone";
}

}  // namespace
}  // namespace halvorn
