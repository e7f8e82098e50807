// What the library knows beyond the fake: whole expressions.
#include <gtest/gtest.h>

#include "KTStuff/CocoaExtensions/StringExtensions.h"
#include "Platform/running/posix/PosixClock.h"
#include "Platform/text/linux/IcuRegex.h"
#include "tests/fakes/RecordingLog.h"
#include "tests/support/TextPrinting.h"

namespace halvorn {
namespace {

using namespace StringExtensions;
using Lines = std::vector<std::string>;

class RealRegex : public testing::Test {
 protected:
  Text replace(const Text& text, const Text& pattern, const Text& replacement) const {
    return replacing_.stringByReplacingOccurrencesOfRegexPattern(text, pattern, replacement);
  }
  IcuRegex regex_;
  KTRegularExpression class_{[this] { return &regex_; }};
  PosixClock clock_;
  RecordingLog log_;
  RegexReplacing replacing_{class_, clock_, log_};
};

TEST_F(RealRegex, GroupsAreReferredToByTheTemplate) {
  EXPECT_EQ(replace("a-b", "(\\w+)-", "[$1]"), Text("[a]b"));
  EXPECT_EQ(replace("2019-11-18", "(\\d+)-(\\d+)-(\\d+)", "$3.$2.$1"), Text("18.11.2019"));
  EXPECT_EQ(replace("ab", "(a)|(b)", "<$1$2>"), Text("<a><b>"));
  EXPECT_EQ(replace("abc", "(?<=a)b", "$0$0"), Text("abbc"));
}

TEST_F(RealRegex, EmptyMatchesAreReplacedToo) { EXPECT_EQ(replace("abc", "x*", "-"), Text("-a-b-c-")); }

TEST_F(RealRegex, WordBoundariesAreThoseOfUnicode) {
  // The simple rule has a boundary at the apostrophe.
  EXPECT_EQ(replace("don't stop", "\\b", "|"), Text("|don't| |stop|"));
  EXPECT_EQ(replace("größe", "\\bgröße\\b", "x"), Text("x"));
}

TEST_F(RealRegex, PairsAreOneCharacter) { EXPECT_EQ(replace("a\U0001F600b", "a.b", "x"), Text("x")); }

TEST_F(RealRegex, ABadPatternIsLoggedEachTime) {
  const Text text = "abc";
  EXPECT_TRUE(replace(text, "(", "x").isSameObject(text));
  EXPECT_TRUE(replace(text, "a{2,1}", "x").isSameObject(text));
  EXPECT_TRUE(replace(text, "[z-a]", "x").isSameObject(text));
  const Lines lines = log_.lines();
  ASSERT_EQ(lines.size(), 3u);
  EXPECT_EQ(lines[0], "Regular expression error: U_REGEX_MISMATCHED_PAREN at line 1, position 1");
  EXPECT_TRUE(lines[1].starts_with("Regular expression error: U_REGEX_MAX_LT_MIN")) << lines[1];
  EXPECT_TRUE(lines[2].starts_with("Regular expression error: U_REGEX_INVALID_RANGE")) << lines[2];
}

TEST_F(RealRegex, OptionsMeanWhatTheySay) {
  const auto count = [&](const Text& pattern, RegexOptions options, const Text& text) {
    class Counter : public RegexVisitor {
     public:
      void found(const RegexMatch&) override { ++count; }
      bool mayContinue() override { return true; }
      int count = 0;
    } counter;
    const auto compilation = regex_.compile(pattern, options);
    EXPECT_NE(compilation.expression, nullptr) << pattern.bytes();
    EXPECT_EQ(compilation.expression->enumerateMatches(text, counter), std::nullopt);
    return counter.count;
  };
  EXPECT_EQ(count("A", 0, "aA"), 1);
  EXPECT_EQ(count("A", RegexOption::caseInsensitive, "aA"), 2);
  EXPECT_EQ(count("a b # c", RegexOption::allowCommentsAndWhitespace, "ab"), 1);
  EXPECT_EQ(count("a.", RegexOption::ignoreMetacharacters, "aba."), 1);
  EXPECT_EQ(count("a.b", 0, "a\nb"), 0);
  EXPECT_EQ(count("a.b", RegexOption::dotMatchesLineSeparators, "a\nb"), 1);
  EXPECT_EQ(count("^a", RegexOption::anchorsMatchLines, "a\na"), 2);
  EXPECT_EQ(count("a.", RegexOption::useUnixLineSeparators, "a\r"), 1);
}

}  // namespace
}  // namespace halvorn
