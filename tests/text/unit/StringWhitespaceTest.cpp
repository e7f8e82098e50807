// White space and lines.
#include <gtest/gtest.h>

#include <limits>
#include <utility>
#include <vector>

#include "KTStuff/CocoaExtensions/StringExtensions.h"
#include "tests/fakes/FakeUnicode.h"
#include "tests/support/TextPrinting.h"

namespace halvorn {
namespace {

using namespace StringExtensions;
using Texts = std::vector<Text>;

struct Row {
  Text text;
  Text expected;
  const char* reason;
};

TEST(StringByTrimmingWhitespace, TrimsUnitsBelow33AndTheNoBreakSpace) {
  const Row rows[] = {
      {"  a b\t", "a b", "inner blanks stay"},
      {"\r\n\x01\x1F"
       "a\x7F",
       "a\x7F", "every C0 control is blank, U+007F is not"},
      {"\u00A0a\u00A0", "a", "no-break space"},
      {"\u3000a", "\u3000a", "ideographic space is not blank"},
      {"\u2003a\u0085", "\u2003a\u0085", "nor are other Unicode spaces"},
      {"   ", "", "all blank"},
  };
  for (const Row& row : rows) EXPECT_EQ(stringByTrimmingWhitespace(row.text), row.expected) << row.reason;
}

TEST(StringByTrimmingWhitespace, U0000IsBlank) {
  EXPECT_EQ(stringByTrimmingWhitespace(Text(std::u16string(u"\0a\0", 3))), Text("a"));
}

TEST(StringByTrimmingWhitespace, NothingToTrimReturnsTheReceiverItself) {
  for (const Text& text : {Text("abc"), Text(""), Text("\u3000a")}) {
    EXPECT_TRUE(stringByTrimmingWhitespace(text).isSameObject(text)) << text.bytes();
  }
}

TEST(StringByTrimmingWhitespace, MutableVariantOnAnUntrimmedTextReturnsANewMutableText) {
  const MutableText text(Text(" a "));
  const MutableText trimmed = stringByTrimmingWhitespace(text);
  EXPECT_FALSE(trimmed.isSameObject(text));
  EXPECT_EQ(trimmed.text(), Text("a"));
  EXPECT_EQ(text.text(), Text(" a "));
}

TEST(StringByTrimmingWhitespace, MutableVariantOnATrimmedTextReturnsTheReceiver) {
  const MutableText text(Text("a"));
  EXPECT_TRUE(stringByTrimmingWhitespace(text).isSameObject(text));
  const MutableText empty;
  EXPECT_TRUE(stringByTrimmingWhitespace(empty).isSameObject(empty));
}

TEST(TrimWhitespace, ReturnsANewMutableTextTrimmedOfUnicodeWhiteSpace) {
  const FakeUnicode unicode;
  EXPECT_EQ(trimWhitespace(" \t\u0085 a b \u00A0\n", unicode).text(), Text("a b"));
  EXPECT_EQ(trimWhitespace("\x01"
                           "a",
                           unicode)
                .text(),
            Text("\x01"
                 "a"));
  EXPECT_EQ(trimWhitespace(" \n ", unicode).text(), Text(""));
}

TEST(AsSingleLine, EveryControlCharacterBecomesOneSpaceAndTheEndsAreTrimmed) {
  const FakeUnicode unicode;
  const Row rows[] = {
      {"a\r\nb", "a  b", "one space each"},
      {"\n a\tb \n", "a b", "ends trimmed"},
      {"a\u00ADb", "a b", "the soft hyphen is a format character"},
      {"", "", "empty"},
      {"\r\n\t", "", "nothing left"},
      {"\U0001F600\n\U0001F600", "\U0001F600 \U0001F600", "pairs stay together"},
  };
  for (const Row& row : rows) EXPECT_EQ(asSingleLine(row.text, unicode), row.expected) << row.reason;
}

TEST(ArrayOfLines, OneSeparatorKindIsUsedForTheWholeText) {
  const std::pair<Text, Texts> rows[] = {
      {"a\nb\r\nc", {"a\nb", "c"}},    // one "\r\n" anywhere decides
      {"a\rb\nc", {"a\rb", "c"}},      // else one "\n"
      {"a\rb\rc", {"a", "b", "c"}},    // else "\r"
      {"a\r\nb\r\n", {"a", "b", ""}},  // a break at the end
      {"\n\n", {"", "", ""}},          // nothing but breaks
      {"abc", {"abc"}},                // none
      {"", {""}},
  };
  for (const auto& [text, lines] : rows) EXPECT_EQ(arrayOfLines(text), lines) << text.bytes();
}

TEST(ArrayOfLines, ATextWithoutABreakIsItsOneLineItself) {
  const Text text = "abc";
  EXPECT_TRUE(arrayOfLines(text).at(0).isSameObject(text));
}

TEST(WithLineSeparator, EveryBreakOfAnyKindBecomesExactlyOneSeparator) {
  const Text text = "a\nb\r\nc\rd\r\r\n\n";
  EXPECT_EQ(withLineSeparator(text, "\n"), Text("a\nb\nc\nd\n\n\n"));
  EXPECT_EQ(withLineSeparator(text, "\r"), Text("a\rb\rc\rd\r\r\r"));
  EXPECT_EQ(withLineSeparator(text, " | "), Text("a | b | c | d |  |  | "));
}

TEST(WithLineSeparator, NullIsTakenAsTheEmptyText) {
  EXPECT_EQ(withLineSeparator("a\r\nb\nc", std::nullopt), Text("abc"));
}

TEST(WithLineSeparator, NothingReplacedReturnsTheReceiver) {
  for (const auto& [text, separator] :
       {std::pair<Text, Text>{"abc", "\n"}, {"a\nb", "\n"}, {"a\rb", "\r"}, {"", "x"}}) {
    EXPECT_TRUE(withLineSeparator(text, separator).isSameObject(text)) << text.bytes();
  }
}

// The order of the passes is kept even where it misbehaves.
TEST(WithLineSeparator, CrLfAsSeparatorIsTakenApartByTheLaterPasses) {
  EXPECT_EQ(withLineSeparator("a\r\nb", "\r\n"), Text("a\r\r\n\r\nb"));
  EXPECT_EQ(withLineSeparator("a\rb", "\r\n"), Text("a\r\r\nb"));
  EXPECT_EQ(withLineSeparator("a\nb", "\r\n"), Text("a\r\nb"));
}

TEST(WithLineSeparator, ASeparatorOfBreaksIsReplacedByItselfAgain) {
  EXPECT_EQ(withLineSeparator("a\r\nb", "\n\n"), Text("a\n\n\n\nb"));
}

TEST(ComponentsSeparatedByCharacter, ASeparatorAtTheEndBeginsNoPart) {
  const std::pair<Text, Texts> rows[] = {
      {",a,,b,", {"", "a", "", "b"}},
      {"", {}},
      {",", {""}},
      {",,", {"", ""}},
      {"abc", {"abc"}},
      {"a,b", {"a", "b"}},
  };
  for (const auto& [text, parts] : rows)
    EXPECT_EQ(componentsSeparatedByCharacter(text, u','), parts) << text.bytes();
}

TEST(ComponentsSeparatedByCharacter, SplitsAtAnyUnitAlsoAtHalfAPair) {
  EXPECT_EQ(componentsSeparatedByCharacter("a\U0001F600b", 0xD83D), (Texts{"a", Text(u"\xDE00"
                                                                                     "b")}));
}

TEST(Repeated, ZeroOrANegativeCountGivesTheEmptyText) {
  EXPECT_EQ(repeated("ab", 0), Text(""));
  EXPECT_EQ(repeated("ab", -1), Text(""));
  EXPECT_EQ(repeated("ab", std::numeric_limits<std::int32_t>::min()), Text(""));
}

TEST(Repeated, OneReturnsTheReceiver) {
  const Text text = "ab";
  EXPECT_TRUE(repeated(text, 1).isSameObject(text));
}

TEST(Repeated, GivesThatManyCopies) {
  EXPECT_EQ(repeated("ab", 5), Text("ababababab"));
  EXPECT_EQ(repeated("", 1000), Text(""));
  EXPECT_EQ(repeated("xyz", 1000).length(), 3000u);
}

}  // namespace
}  // namespace halvorn
