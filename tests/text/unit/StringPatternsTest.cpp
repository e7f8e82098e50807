// Wildcards and regular expressions.
#include <gtest/gtest.h>

#include <thread>

#include "KTStuff/CocoaExtensions/StringExtensions.h"
#include "tests/fakes/FakeClock.h"
#include "tests/fakes/FakeRegex.h"
#include "tests/fakes/RecordingLog.h"
#include "tests/support/TextPrinting.h"

namespace halvorn {
namespace {

using namespace StringExtensions;
using Lines = std::vector<std::string>;

TEST(MatchesWildcardPattern, AStarMatchesAnyRunIncludingTheEmptyOne) {
  const std::pair<Text, const char*> rows[] = {
      {"abcabc", "a*c"}, {"abcabc", "*b*"},  {"abcabc", "abc*"}, {"abcabc", "*abc"}, {"abc", "*"},
      {"", "*"},         {"", "**"},         {"abc", "a**c"},    {"abc", "*a*b*c*"}, {"abc", "abc*"},
      {"abc", "*abc"},   {"aXbXc", "a*b*c"}, {"aab", "*ab"},     {"abab", "*ab*ab"},
  };
  for (const auto& [text, pattern] : rows) EXPECT_TRUE(matchesWildcardPattern(text, pattern)) << pattern;
}

TEST(MatchesWildcardPattern, PrefixSuffixAndMiddlePartsMustBeThereInOrder) {
  const std::pair<Text, const char*> rows[] = {
      {"abc", "b*"}, {"abc", "*b"}, {"abc", "*x*"},   {"abc", "*c*b*"},
      {"", "a*"},    {"", "*a"},    {"abc", "*abcd"},
  };
  for (const auto& [text, pattern] : rows) EXPECT_FALSE(matchesWildcardPattern(text, pattern)) << pattern;
}

TEST(MatchesWildcardPattern, TheSuffixMayNotOverlapWhatTheEarlierPartsConsumed) {
  EXPECT_FALSE(matchesWildcardPattern("abc", "ab*bc"));
  EXPECT_FALSE(matchesWildcardPattern("ab", "*ab*ab"));
  EXPECT_FALSE(matchesWildcardPattern("a", "a*a"));
  EXPECT_TRUE(matchesWildcardPattern("aa", "a*a"));
}

TEST(MatchesWildcardPattern, WithoutAStarItIsEquality) {
  EXPECT_TRUE(matchesWildcardPattern("abc", "abc"));
  EXPECT_FALSE(matchesWildcardPattern("abc", "ab"));
  EXPECT_TRUE(matchesWildcardPattern("", ""));
  EXPECT_FALSE(matchesWildcardPattern("abc", ""));
}

TEST(MatchesWildcardPattern, CaseMattersAndThereIsNoOtherWildcard) {
  EXPECT_FALSE(matchesWildcardPattern("ABC", "a*"));
  EXPECT_FALSE(matchesWildcardPattern("abc", "a?c"));
  EXPECT_FALSE(matchesWildcardPattern("a*c", "a\\*c"));
  EXPECT_TRUE(matchesWildcardPattern("a\\bc", "a\\*c"));
}

class RegexReplacingTest : public testing::Test {
 protected:
  Text replace(const Text& text, const Text& pattern, const Text& replacement) const {
    return replacing_.stringByReplacingOccurrencesOfRegexPattern(text, pattern, replacement);
  }

  FakeRegex regex_;
  const Regex* found_ = &regex_;
  mutable int lookups_ = 0;
  KTRegularExpression class_{[this] {
    ++lookups_;
    return found_;
  }};
  FakeClock clock_;
  RecordingLog log_;
  RegexReplacing replacing_{class_, clock_, log_};
};

TEST_F(RegexReplacingTest, MatchesAreReplacedByTheTemplate) {
  EXPECT_EQ(replace("abcabc", "bc", "-"), Text("a-a-"));
  EXPECT_EQ(replace("abcabc", "bc", ""), Text("aa"));
  EXPECT_EQ(log_.lines(), Lines());
}

TEST_F(RegexReplacingTest, DollarAndANumberNameTheWholeMatchAndItsGroups) {
  EXPECT_EQ(replace("abc", "(a)(b)", "[$0|$1|$2]"), Text("[ab|a|b]c"));
}

TEST_F(RegexReplacingTest, ADollarWithoutADigitAndABackslashedOneStandForThemselves) {
  EXPECT_EQ(replace("abc", "b", "$"), Text("a$c"));
  EXPECT_EQ(replace("abc", "b", "$x"), Text("a$xc"));
  EXPECT_EQ(replace("abc", "b", "\\$0"), Text("a$0c"));
  EXPECT_EQ(replace("abc", "b", "\\\\$0"), Text("a\\bc"));
  EXPECT_EQ(replace("abc", "b", "\\n"), Text("anc"));
  EXPECT_EQ(replace("abc", "b", "\\"), Text("a\\c"));
}

TEST_F(RegexReplacingTest, AGroupThatDoesNotExistIsEmptyAndMoreDigitsCountOnlyWhileThereIsSuchAGroup) {
  EXPECT_EQ(replace("abc", "b", "[$1]"), Text("a[]c"));
  EXPECT_EQ(replace("abc", "(b)", "[$10]"), Text("a[b0]c"));
  EXPECT_EQ(replace("abc", "(b)", "[$00]"), Text("a[b]c"));
  EXPECT_EQ(replace("abcdefghijk", "(a)(b)(c)(d)(e)(f)(g)(h)(i)(j)", "$10$1"), Text("jak"));
}

TEST_F(RegexReplacingTest, APatternWithoutAMatchReturnsTheReceiver) {
  const Text text = "abc";
  EXPECT_TRUE(replace(text, "x", "y").isSameObject(text));
  EXPECT_EQ(log_.lines(), Lines());
}

TEST_F(RegexReplacingTest, PatternsAreCompiledWithUnicodeWordBoundariesOnly) {
  EXPECT_EQ(replace("a", "a", "b"), Text("b"));
  ASSERT_EQ(regex_.compiled.size(), 1u);
  EXPECT_EQ(regex_.compiled[0].options, 64u);
}

TEST_F(RegexReplacingTest, ABadPatternIsLoggedEveryTimeAndReturnsTheReceiver) {
  const Text text = "abc";
  EXPECT_TRUE(replace(text, "(", "x").isSameObject(text));
  EXPECT_TRUE(replace(text, "(", "x").isSameObject(text));
  const std::string line = "Regular expression error: the pattern ends too early";
  EXPECT_EQ(log_.lines(), (Lines{line, line}));
}

TEST_F(RegexReplacingTest, ASearchThatTakesTooLongIsGivenUpAndReturnsTheReceiver) {
  // Every time the clock is read, most of the time allowed has gone by.
  class ImpatientClock : public FakeClock {
   public:
    double monotonicSeconds() const override { return seconds_ += RegexReplacing::kSecondsAllowed * 0.6; }

   private:
    mutable double seconds_ = 0;
  };
  const ImpatientClock clock;
  const RegexReplacing replacing(class_, clock, log_);
  const Text text = "aaaa";
  EXPECT_TRUE(replacing.stringByReplacingOccurrencesOfRegexPattern(text, "a", "b").isSameObject(text));
  EXPECT_EQ(log_.lines(), Lines{"Regular expression error: stopped"});
}

TEST_F(RegexReplacingTest, WithoutTheClassEveryCallReturnsTheReceiverAndOnlyTheFirstIsLogged) {
  found_ = nullptr;
  const Text text = "abc";
  for (int i = 0; i < 3; ++i) EXPECT_TRUE(replace(text, "b", "x").isSameObject(text));
  EXPECT_EQ(log_.lines(), Lines{"Regular expressions are not available (require OS X 10.7 or newer)."});
}

TEST_F(RegexReplacingTest, HoweverManyObjectsReplaceItIsLoggedOncePerProcess) {
  found_ = nullptr;
  const RegexReplacing other(class_, clock_, log_);
  const Text text = "abc";
  EXPECT_TRUE(replace(text, "b", "x").isSameObject(text));
  EXPECT_TRUE(other.stringByReplacingOccurrencesOfRegexPattern(text, "b", "x").isSameObject(text));
  EXPECT_EQ(log_.lines().size(), 1u);
}

TEST_F(RegexReplacingTest, TheClassIsLookedUpOnceAlsoWhenThereIsNone) {
  found_ = nullptr;
  EXPECT_FALSE(class_.regexAvailable());
  found_ = &regex_;
  EXPECT_EQ(class_.regexClass(), nullptr);
  EXPECT_EQ(lookups_, 1);
}

TEST_F(RegexReplacingTest, WithTheClassItIsAvailable) {
  EXPECT_TRUE(class_.regexAvailable());
  EXPECT_EQ(class_.regexClass(), &regex_);
  EXPECT_NE(class_.regularExpressionWithPattern("a", 0).expression, nullptr);
  EXPECT_EQ(class_.regularExpressionWithPattern("(", 0).expression, nullptr);
  EXPECT_EQ(class_.regularExpressionWithPattern("(", 0).error, Text("the pattern ends too early"));
  EXPECT_EQ(lookups_, 1);
}

TEST_F(RegexReplacingTest, WithoutTheClassThereIsNeitherAnExpressionNorAnError) {
  found_ = nullptr;
  const RegexCompilation compilation = class_.regularExpressionWithPattern("a", 0);
  EXPECT_EQ(compilation.expression, nullptr);
  EXPECT_EQ(compilation.error, std::nullopt);
}

TEST_F(RegexReplacingTest, ManyThreadsLookTheClassUpOnce) {
  std::vector<std::thread> threads;
  for (int i = 0; i < 8; ++i) threads.emplace_back([this] { EXPECT_EQ(class_.regexClass(), &regex_); });
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(lookups_, 1);
}

}  // namespace
}  // namespace halvorn
