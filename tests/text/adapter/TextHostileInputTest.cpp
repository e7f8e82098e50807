// Texts, patterns and pages of ten megabytes that were made to be trouble: everything answers, soon and in
// full. Under sanitizers they are a tenth of that.
#include <gtest/gtest.h>

#include <functional>

#include "KTStuff/CocoaExtensions/StringExtensions.h"
#include "Platform/running/posix/PosixClock.h"
#include "Platform/text/linux/IcuRegex.h"
#include "Platform/text/linux/IcuTextCodecs.h"
#include "Platform/text/linux/IcuUnicode.h"
#include "Platform/text/posix/XmlHtmlText.h"
#include "tests/fakes/RecordingLog.h"
#include "tests/support/TextPrinting.h"

namespace halvorn {
namespace {

using namespace StringExtensions;
using Lines = std::vector<std::string>;

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr std::size_t kMuch = 1 << 20;  // a multiple of 16 that leaves a rest by 15
#else
constexpr std::size_t kMuch = 10 << 20;
#endif

// The part again and again, up to that many units.
Text many(std::u16string_view part, std::size_t units = kMuch) {
  std::u16string result;
  result.reserve(2 * units + part.size());
  result.append(part);
  while (result.size() < units) result.append(result);
  result.resize(units);
  return Text(std::move(result));
}

TEST(HostileTexts, TrimmingReadsBlanksOnce) {
  const IcuUnicode unicode;
  EXPECT_EQ(stringByTrimmingWhitespace(many(u" ")), Text());
  EXPECT_EQ(stringByTrimmingWhitespace(many(u" ") + "a" + many(u" ")), Text("a"));
  EXPECT_EQ(trimWhitespace(many(u"\u3000") + "a", unicode).text(), Text("a"));
  EXPECT_EQ(asSingleLine(many(u"\r\n"), unicode), Text());
}

TEST(HostileTexts, LinesAreSplitAndNormalisedInOneGo) {
  EXPECT_EQ(arrayOfLines(many(u"a line of text.\n")).size(), kMuch / 16 + 1);
  EXPECT_EQ(arrayOfLines(many(u"\r\n", kMuch / 8)).size(), kMuch / 16 + 1);
  EXPECT_EQ(componentsSeparatedByCharacter(many(u"a field of it,,"), u',').size(), (kMuch / 15) * 2 + 1);
  EXPECT_EQ(withLineSeparator(many(u"\r\n"), "\n").length(), kMuch / 2);
  EXPECT_EQ(withLineSeparator(many(u"\n"), "\r\n").length(), kMuch * 2);
  EXPECT_EQ(repeated("ab", static_cast<std::int32_t>(kMuch / 2)).length(), kMuch);
}

TEST(HostileTexts, EscapesDoNotMoveTheRestOfTheTextEachTime) {
  const Text backslashes = many(u"\\");
  EXPECT_EQ(stringByEscapingCharacters(backslashes, KTEscapeCharacters).length(), kMuch + kMuch / 2);
  EXPECT_EQ(stringByExpandingEscapedCharacters(backslashes, KTEscapeCharacters).length(), kMuch / 2);
  EXPECT_EQ(stringByExpandingEscapedControlCharacters(many(u"\\n\\r\\t")).isEmpty(), false);
  // An occurrence at every place, all backslashes before it to be counted, the target overlapping itself.
  EXPECT_FALSE(stringByReplacingUnescapedOccurrencesOfString(backslashes, "\\", "x").isEmpty());
  EXPECT_FALSE(
      stringByReplacingUnescapedOccurrencesOfString(many(u"a"), many(u"a", kMuch / 2), "b").isEmpty());
  EXPECT_EQ(stringByReplacingUnescapedOccurrencesOfString(many(u"a"), "a", "bc").length(), 2 * kMuch);
}

TEST(HostileTexts, SearchesAreLinearAlsoWhereEverythingNearlyMatches) {
  const Text text = many(u"a");
  const Text almost = many(u"a", kMuch / 2) + "b";
  EXPECT_FALSE(matchesWildcardPattern(text, Text("*") + almost + "*"));
  EXPECT_FALSE(matchesWildcardPattern(text, repeated("*aab", 1000) + "*"));
  EXPECT_TRUE(matchesWildcardPattern(text, many(u"*a", kMuch)));
  EXPECT_TRUE(matchesWildcardPattern(text, many(u"*")));
  EXPECT_TRUE(stringByReplacingUnescapedOccurrencesOfString(text, almost, "x").isSameObject(text));
}

TEST(HostileTexts, NumbersOfMillionsOfDigitsAreCompared) {
  const IcuUnicode unicode;
  EXPECT_EQ(numericCompare(many(u"9") + "8", many(u"9") + "9", unicode), Ordering::Ascending);
  EXPECT_EQ(numericCompare(many(u"0") + "1", "2", unicode), Ordering::Ascending);
  EXPECT_EQ(caseInsensitiveNumericCompare(many(u"\u00E9"), many(u"\u00C9"), unicode), Ordering::Same);
  EXPECT_EQ(numericValue(many(u"9")), std::numeric_limits<std::int64_t>::max());
  EXPECT_EQ(smartFloatValue(many(u"1,")), 1.1F);
  EXPECT_FALSE(booleanValue(many(u"0")));
}

TEST(HostileTexts, ScalarsOfBrokenPairs) {
  EXPECT_EQ(numberOfUnicodeCharacters(many(u"\xD83D")), kMuch);
  EXPECT_EQ(UTF32SequenceString(many(u"\xD83D")), Text());
  EXPECT_EQ(UTF32SequenceString(many(u"\xDE00")).length(), 5 * kMuch - 1);
  EXPECT_EQ(UTF32SequenceString(many(u"\xDE00\xD83D")).substring(0, 16), Text("DE00,1F600,1F600"));
}

TEST(HostileTexts, MalformedEscapesReturnTheText) {
  for (const std::u16string_view part : {u"%", u"%4", u"%zz", u"%C3", u"%F0%9F"}) {
    const Text text = many(part);
    EXPECT_TRUE(stringWithExpandedPercentEscapes(text).isSameObject(text));
    EXPECT_EQ(stringWithPercentEscapes(text).at(0), u'%');
  }
  EXPECT_EQ(stringWithPercentEscapes(many(u"\u20AC")).length(), 9 * kMuch);
}

class HostilePatterns : public testing::Test {
 protected:
  void expectGivenUp(const RegexReplacing& replacing, const Text& text, const Text& pattern,
                     const std::string& error) {
    log_.clear();
    const Text result = replacing.stringByReplacingOccurrencesOfRegexPattern(text, pattern, "x");
    EXPECT_TRUE(result.isSameObject(text)) << pattern.substring(0, 40).bytes();
    const Lines lines = log_.lines();
    ASSERT_EQ(lines.size(), 1u) << pattern.substring(0, 40).bytes();
    EXPECT_TRUE(lines[0].starts_with("Regular expression error: " + error)) << lines[0];
  }
  IcuRegex regex_;
  KTRegularExpression class_{[this] { return &regex_; }};
  PosixClock clock_;
  RecordingLog log_;
  RegexReplacing hasty_{class_, clock_, log_, 0.5};
  RegexReplacing patient_{class_, clock_, log_, 60.0};
};

TEST_F(HostilePatterns, BacktrackingWithoutEndIsGivenUpWithALogLine) {
  expectGivenUp(hasty_, many(u"a", 40) + "b", "(a+)+$", "U_REGEX_STOPPED_BY_CALLER");
}

TEST_F(HostilePatterns, ASearchThatReadsTheTextAgainFromEveryPlaceIsGivenUp) {
  expectGivenUp(hasty_, many(u"a", 200'000), "a*b", "U_REGEX_STOPPED_BY_CALLER");
}

TEST_F(HostilePatterns, ASearchThatRemembersTooMuchIsGivenUp) {
  expectGivenUp(patient_, many(u"ab", 10 << 20), "(a|b)*c", "U_REGEX_STACK_OVERFLOW");
}

TEST_F(HostilePatterns, PatternsOfTenMegabytesAreAnswered) {
  expectGivenUp(patient_, "abc", many(u"("), "U_REGEX_");
  expectGivenUp(patient_, "abc", many(u"["), "U_REGEX_");
  log_.clear();
  const Text text = many(u"ab") + "c";
  EXPECT_EQ(patient_.stringByReplacingOccurrencesOfRegexPattern(text, text, "x"), Text("x"));
  EXPECT_EQ(log_.lines(), Lines());
}

TEST_F(HostilePatterns, TextsOfTenMegabytesAreReplaced) {
  EXPECT_EQ(patient_.stringByReplacingOccurrencesOfRegexPattern(many(u"ab,", kMuch / 4), ",+", ";").length(),
            kMuch / 4);
  EXPECT_EQ(log_.lines(), Lines());
}

TEST(HostilePages, NestingWithoutEndReturnsTheText) {
  const XmlHtmlText html;
  for (const std::u16string_view part : {u"<div>", u"<b>", u"<table><td>", u"<ul><li>"}) {
    const Text page = many(part, part == u"<b>" ? kMuch : kMuch / 16);
    EXPECT_TRUE(stringByExpandingHTMLEntities(page, html).isSameObject(page));
  }
}

TEST(HostilePages, MalformedMarkupKeepsItsText) {
  const XmlHtmlText html;
  constexpr std::size_t kSome = kMuch / 16;
  EXPECT_EQ(stringByExpandingHTMLEntities(many(u"<", kSome), html), many(u"<", kSome));
  EXPECT_EQ(stringByExpandingHTMLEntities(many(u"&", kSome), html), many(u"&", kSome));
  EXPECT_EQ(stringByExpandingHTMLEntities(many(u"&#", kSome), html), many(u"&#", kSome));
  EXPECT_EQ(stringByExpandingHTMLEntities(Text("a</p>") + repeated("</i></div>", kSome / 10) + "b", html),
            Text("a\nb"));
  EXPECT_EQ(stringByExpandingHTMLEntities(repeated("<b>", 500) + many(u"</i>", kSome) + "a", html),
            Text("a"));
  EXPECT_EQ(stringByExpandingHTMLEntities(Text("a<!-- ") + many(u"-"), html), Text("a"));
  EXPECT_EQ(stringByExpandingHTMLEntities(Text("a<b c=\"") + many(u"d"), html), Text("a"));
  EXPECT_EQ(stringByExpandingHTMLEntities(many(u"<p>x", kSome), html).length(), kSome / 2 - 1);
}

TEST(HostileBytes, EveryCodecAnswersOnEveryByte) {
  const IcuTextCodecs codecs;
  const RecordingLog log;
  std::string bytes(kMuch, '\0');
  for (std::size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<char>(i * 7 + i / 251);
  EXPECT_EQ(codecs.decode(bytes, TextEncodings::utf8), std::nullopt);
  EXPECT_EQ(codecs.decode(bytes, TextEncodings::latin1)->length(), bytes.size());
  EXPECT_EQ(stringWithHTML(bytes, codecs, log).length(), bytes.size());
  EXPECT_EQ(stringWithHTML("<html" + bytes + "<meta charset=", codecs, log).length(), bytes.size() + 19);
  EXPECT_EQ(
      stringWithHTML(std::string(kMuch, '<') + "<html><meta charset=" + std::string(kMuch, 'a'), codecs, log)
          .length(),
      2 * kMuch + 20);
}

}  // namespace
}  // namespace halvorn
