// The same cases against the fakes that know Latin-1 and what a system knows everything by.
#include <gtest/gtest.h>

#include "TextImplementations.h"
#include "tests/fakes/FakeDigests.h"
#include "tests/support/TextPrinting.h"

namespace halvorn {
namespace {

using namespace std::string_literals;

template <typename Subject>
struct UnicodeContract : testing::Test {
  Subject subject;
};
TYPED_TEST_SUITE(UnicodeContract, Unicodes);

// The classes of U+0000 to U+00FF: letter, number, control or format, white
// space, else a symbol or punctuation.
TYPED_TEST(UnicodeContract, EveryCharacterOfLatin1IsInItsClass) {
  const auto isIn = [](char32_t scalar, std::u32string_view set) { return set.find(scalar) != set.npos; };
  for (char32_t scalar = 0; scalar < 0x100; ++scalar) {
    const bool isAsciiLetter = (scalar >= 'a' && scalar <= 'z') || (scalar >= 'A' && scalar <= 'Z');
    const bool isLetter = isAsciiLetter || isIn(scalar, U"\u00AA\u00B5\u00BA") ||
                          (scalar >= 0xC0 && !isIn(scalar, U"\u00D7\u00F7"));
    const bool isNumber = isIn(scalar, U"0123456789\u00B2\u00B3\u00B9\u00BC\u00BD\u00BE");
    const bool isControl = scalar < 0x20 || (scalar >= 0x7F && scalar <= 0x9F) || scalar == 0xAD;
    EXPECT_EQ(this->subject.isLetter(scalar), isLetter) << static_cast<unsigned>(scalar);
    EXPECT_EQ(this->subject.isAlphanumeric(scalar), isLetter || isNumber) << static_cast<unsigned>(scalar);
    EXPECT_EQ(this->subject.isControl(scalar), isControl) << static_cast<unsigned>(scalar);
    EXPECT_EQ(this->subject.isWhiteSpace(scalar), isIn(scalar, U"\t\n\v\f\r \u0085\u00A0"))
        << static_cast<unsigned>(scalar);
    EXPECT_FALSE(this->subject.isUnassigned(scalar)) << static_cast<unsigned>(scalar);
  }
}

TYPED_TEST(UnicodeContract, FoldingTakesCaseOff) {
  EXPECT_EQ(this->subject.caseFolded("Straße ÀÞ×"), Text("strasse àþ×"));
  EXPECT_EQ(this->subject.caseFolded(Text(u"A\xD800")), Text(u"a\xD800"));
  EXPECT_EQ(this->subject.caseFolded(""), Text(""));
}

TYPED_TEST(UnicodeContract, DecompositionTakesMarksOff) {
  EXPECT_EQ(this->subject.decomposed("éÅñçÿØß"), Text("e\u0301A\u030An\u0303c\u0327y\u0308Øß"));
  EXPECT_EQ(this->subject.decomposed(Text(u"é\xDC80")), Text(u"e\u0301\xDC80"));
}

TYPED_TEST(UnicodeContract, ComparesWithoutRegardToCase) {
  EXPECT_EQ(this->subject.compareCaseInsensitive("ABC", "abc"), Ordering::Same);
  EXPECT_EQ(this->subject.compareCaseInsensitive("STRASSE", "straße"), Ordering::Same);
  EXPECT_EQ(this->subject.compareCaseInsensitive("a", "B"), Ordering::Ascending);
  EXPECT_EQ(this->subject.compareCaseInsensitive("é", "E"), Ordering::Descending);
}

template <typename Subject>
struct TextCodecsContract : testing::Test {
  Subject subject;
};
TYPED_TEST_SUITE(TextCodecsContract, Codecs);

TYPED_TEST(TextCodecsContract, TextsComeBackFromEveryEncodingThatHasThem) {
  using namespace TextEncodings;
  const Text narrow = "Plain text.";
  const Text western = "Grüße: ©ÿ";
  const Text wide = "日本 \U0001F600";
  for (const TextEncoding encoding : {ascii, latin1, macRoman, utf8, unicode, utf16BigEndian,
                                      utf16LittleEndian, utf32BigEndian, utf32LittleEndian}) {
    for (const Text& text : {narrow, western, wide, Text()}) {
      const auto bytes = this->subject.encode(text, encoding);
      const bool isNarrow = encoding == ascii || encoding == latin1 || encoding == macRoman;
      const bool isAvailable = text == wide ? !isNarrow : text == western ? encoding != ascii : true;
      ASSERT_EQ(bytes.has_value(), isAvailable) << encoding << testing::PrintToString(text);
      if (!bytes) continue;
      EXPECT_EQ(this->subject.decode(*bytes, encoding), text) << encoding;
    }
  }
}

TYPED_TEST(TextCodecsContract, NoByteOrderMarkIsWritten) {
  using namespace TextEncodings;
  EXPECT_EQ(this->subject.encode("A", utf8), "A");
  EXPECT_EQ(this->subject.encode("A", unicode), "\0A"s);
  EXPECT_EQ(this->subject.encode("A", utf16BigEndian), "\0A"s);
  EXPECT_EQ(this->subject.encode("A", utf16LittleEndian), "A\0"s);
  EXPECT_EQ(this->subject.encode("A", utf32BigEndian), "\0\0\0A"s);
  EXPECT_EQ(this->subject.encode("A", utf32LittleEndian), "A\0\0\0"s);
}

TYPED_TEST(TextCodecsContract, AByteOrderMarkBelongsToTheEncoding) {
  using namespace TextEncodings;
  EXPECT_EQ(this->subject.decode("\xEF\xBB\xBF"
                                 "A",
                                 utf8),
            Text("A"));
  EXPECT_EQ(this->subject.decode("\xFE\xFF\0A"s, unicode), Text("A"));
  EXPECT_EQ(this->subject.decode("\xFF\xFE"
                                 "A\0"s,
                                 unicode),
            Text("A"));
  EXPECT_EQ(this->subject.decode("\0A"s, unicode), Text("A"));
  EXPECT_EQ(this->subject.decode("\xFE\xFF\0A"s, utf16BigEndian), Text("A"));
  EXPECT_EQ(this->subject.decode("\xFF\xFE"
                                 "A\0"s,
                                 utf16LittleEndian),
            Text("A"));
  EXPECT_EQ(this->subject.decode("\0\0\xFE\xFF\0\0\0A"s, utf32BigEndian), Text("A"));
  EXPECT_EQ(this->subject.decode("\xFF\xFE\0\0A\0\0\0"s, utf32LittleEndian), Text("A"));
}

TYPED_TEST(TextCodecsContract, ATextThatBeginsLikeAMarkIsTakenForMarkedWhenItIsReadAgain) {
  using namespace TextEncodings;
  EXPECT_EQ(this->subject.decode("\xFE\xFF\xFF\xFE"s, unicode), Text(u"\uFFFE"));
  EXPECT_EQ(this->subject.encode(Text(u"\uFFFE"), unicode), "\xFF\xFE"s);
  EXPECT_EQ(this->subject.decode("\xFF\xFE"s, unicode), Text());
}

TYPED_TEST(TextCodecsContract, EveryByteIsACharacterOfLatin1AndMacRoman) {
  std::string bytes;
  for (int byte = 0; byte < 0x100; ++byte) bytes.push_back(static_cast<char>(byte));
  std::u16string latin1;
  for (char16_t unit = 0; unit < 0x100; ++unit) latin1.push_back(unit);
  EXPECT_EQ(this->subject.decode(bytes, TextEncodings::latin1), Text(latin1));
  EXPECT_EQ(this->subject.decode(bytes, TextEncodings::macRoman), Text::fromMacRoman(bytes));
}

TYPED_TEST(TextCodecsContract, BytesThatAreNotOfTheEncodingAreRefused) {
  using namespace TextEncodings;
  EXPECT_EQ(this->subject.decode("a\x80", ascii), std::nullopt);
  for (const char* const bytes : {"\x80", "\xC3", "\xC0\x80", "\xED\xA0\x80", "\xF4\x90\x80\x80", "a\377b"}) {
    EXPECT_EQ(this->subject.decode(bytes, utf8), std::nullopt) << bytes;
  }
  EXPECT_EQ(this->subject.decode("\0A\0"s, unicode), std::nullopt);
  EXPECT_EQ(this->subject.decode("\xD8\0\0A"s, utf16BigEndian), std::nullopt);
  EXPECT_EQ(this->subject.decode("\0\xDC"s, utf16LittleEndian), std::nullopt);
  EXPECT_EQ(this->subject.decode("\0\x11\0\0"s, utf32BigEndian), std::nullopt);
  EXPECT_EQ(this->subject.decode("\0\xD8\0\0"s, utf32LittleEndian), std::nullopt);
  EXPECT_EQ(this->subject.decode("\0\0\0"s, utf32BigEndian), std::nullopt);
}

TYPED_TEST(TextCodecsContract, LoneSurrogatesAreNotWritten) {
  using namespace TextEncodings;
  for (const TextEncoding encoding : {utf8, unicode, utf16LittleEndian, utf32BigEndian, latin1}) {
    EXPECT_EQ(this->subject.encode(Text(u"a\xD800"), encoding), std::nullopt) << encoding;
    EXPECT_EQ(this->subject.encode(Text(u"\xDC00"
                                        u"a"),
                                   encoding),
              std::nullopt)
        << encoding;
  }
}

TYPED_TEST(TextCodecsContract, UnknownEncodingsAreRefused) {
  EXPECT_EQ(this->subject.decode("a", 0), std::nullopt);
  EXPECT_EQ(this->subject.decode("a", 0x12345678), std::nullopt);
  EXPECT_EQ(this->subject.encode("a", 0xFFFFFFFF), std::nullopt);
}

TYPED_TEST(TextCodecsContract, NamesAreKnownInAnyCase) {
  EXPECT_EQ(this->subject.encodingForIanaName("UTF-8"), TextEncodings::utf8);
  EXPECT_EQ(this->subject.encodingForIanaName("utf-8"), TextEncodings::utf8);
  EXPECT_EQ(this->subject.encodingForIanaName("ISO-8859-1"), TextEncodings::latin1);
  EXPECT_EQ(this->subject.encodingForIanaName("us-ascii"), TextEncodings::ascii);
  EXPECT_EQ(this->subject.encodingForIanaName("macintosh"), TextEncodings::macRoman);
  EXPECT_EQ(this->subject.encodingForIanaName("utf-16"), TextEncodings::unicode);
  EXPECT_EQ(this->subject.encodingForIanaName("UTF-16LE"), TextEncodings::utf16LittleEndian);
  EXPECT_EQ(this->subject.encodingForIanaName("klingon"), std::nullopt);
  EXPECT_EQ(this->subject.encodingForIanaName(""), std::nullopt);
}

class MatchCollector : public RegexVisitor {
 public:
  void found(const RegexMatch& match) override { matches.push_back(match.groups); }
  bool mayContinue() override { return patience == 0 || --patience > 0; }
  std::vector<std::vector<std::optional<TextRange>>> matches;
  int patience = 0;  // how often it says yes, and once more; 0 for always
};

template <typename Subject>
struct RegexContract : testing::Test {
  Subject subject;
};
TYPED_TEST_SUITE(RegexContract, Regexes);

TYPED_TEST(RegexContract, MatchesAreFoundFromLeftToRightWithTheirGroups) {
  const auto compilation = this->subject.compile("a(b)", 0);
  ASSERT_NE(compilation.expression, nullptr);
  EXPECT_EQ(compilation.error, std::nullopt);
  EXPECT_EQ(compilation.expression->numberOfCaptureGroups(), 1u);
  MatchCollector collector;
  EXPECT_EQ(compilation.expression->enumerateMatches("abcab", collector), std::nullopt);
  using Groups = std::vector<std::optional<TextRange>>;
  EXPECT_EQ(collector.matches, (std::vector<Groups>{Groups{TextRange{0, 2}, TextRange{1, 1}},
                                                    Groups{TextRange{3, 2}, TextRange{4, 1}}}));
}

TYPED_TEST(RegexContract, MatchesDoNotOverlap) {
  MatchCollector collector;
  EXPECT_EQ(this->subject.compile("aa", 0).expression->enumerateMatches("aaaaa", collector), std::nullopt);
  EXPECT_EQ(collector.matches.size(), 2u);
}

TYPED_TEST(RegexContract, ATextWithoutAMatchIsSearchedToItsEnd) {
  for (const Text& text : {Text(), Text("bbb")}) {
    MatchCollector collector;
    EXPECT_EQ(this->subject.compile("a", 0).expression->enumerateMatches(text, collector), std::nullopt);
    EXPECT_TRUE(collector.matches.empty());
  }
}

TYPED_TEST(RegexContract, ABadPatternIsAnsweredWithAReason) {
  for (const Text& pattern : {Text("("), Text("a)"), Text("["), Text()}) {
    const auto compilation = this->subject.compile(pattern, 0);
    EXPECT_EQ(compilation.expression, nullptr) << pattern.bytes();
    ASSERT_TRUE(compilation.error.has_value()) << pattern.bytes();
    EXPECT_FALSE(compilation.error->isEmpty()) << pattern.bytes();
  }
}

TYPED_TEST(RegexContract, TheVisitorCanGiveTheSearchUp) {
  std::u16string text(100'000, u'a');
  MatchCollector collector;
  collector.patience = 3;
  const OptionalText answer =
      this->subject.compile("a", 0).expression->enumerateMatches(Text(text), collector);
  ASSERT_TRUE(answer.has_value());
  EXPECT_FALSE(answer->isEmpty());
  EXPECT_LT(collector.matches.size(), 1000u);
}

TYPED_TEST(RegexContract, OneExpressionServesManySearches) {
  const auto expression = this->subject.compile("a", 0).expression;
  for (const std::size_t count : {3u, 1u, 2u}) {
    MatchCollector collector;
    EXPECT_EQ(expression->enumerateMatches(Text(std::u16string(count, u'a')), collector), std::nullopt);
    EXPECT_EQ(collector.matches.size(), count);
  }
}

// What a page holds, with the elements that every page is given left out.
class PageWriter : public HtmlVisitor {
 public:
  void startElement(std::string_view name) override { write("<", name); }
  void endElement(std::string_view name) override { write("</", name); }
  void characters(const Text& text) override { page += text.bytes(); }
  std::string page;

 private:
  void write(const char* start, std::string_view name) {
    if (name != "html" && name != "body") page += start + std::string(name) + ">";
  }
};

template <typename Subject>
struct HtmlTextContract : testing::Test {
  std::string read(const Text& html) {
    PageWriter writer;
    EXPECT_EQ(subject.read(html, writer), HtmlAnswer::Read);
    return writer.page;
  }
  Subject subject;
};
TYPED_TEST_SUITE(HtmlTextContract, Htmls);

TYPED_TEST(HtmlTextContract, TextAndElementsComeInOrder) {
  EXPECT_EQ(this->read("<p>a <b>b</b> c</p><p>d</p>"), "<p>a <b>b</b> c</p><p>d</p>");
  EXPECT_EQ(this->read("<p class=\"x\">a</p>"), "<p>a</p>");
  EXPECT_EQ(this->read("<p>a<br>b</p>"), "<p>a<br></br>b</p>");
}

TYPED_TEST(HtmlTextContract, EntitiesAreResolved) {
  EXPECT_EQ(this->read("<p>&lt;a&gt; &amp; &quot;&eacute;&nbsp;&#65;&#x1F600;</p>"),
            "<p><a> & \"é\u00A0A\U0001F600</p>");
}

TYPED_TEST(HtmlTextContract, AnyTextGoesThrough) {
  EXPECT_EQ(this->read("<p>Grüße 日本 \U0001F600</p>"), "<p>Grüße 日本 \U0001F600</p>");
  EXPECT_EQ(this->read("<p>&nonsense; a & b</p>"), "<p>&nonsense; a & b</p>");
  EXPECT_EQ(this->read(""), "");
}

template <typename Subject>
struct FourCharCodesContract : testing::Test {
  Subject subject;
};
TYPED_TEST_SUITE(FourCharCodesContract, AllCodes);

TYPED_TEST(FourCharCodesContract, FourCharactersOfMacOSRomanAreACode) {
  EXPECT_EQ(this->subject.codeOf("ABCD"), fourCharCode("ABCD"));
  EXPECT_EQ(this->subject.codeOf("MAC©"), 0x4D4143A9U);
  EXPECT_EQ(this->subject.codeOf("a  b"), fourCharCode("a  b"));
  EXPECT_EQ(this->subject.codeOf("????"), kUndeclaredSignature);
}

TYPED_TEST(FourCharCodesContract, EveryOtherTextIsNone) {
  for (const Text& text : {Text(""), Text("ABC"), Text("ABCDE"), Text("日本語版"), Text("ab\U0001F600")})
    EXPECT_EQ(this->subject.codeOf(text), 0U) << text.bytes();
}

TYPED_TEST(FourCharCodesContract, ACodeIsWrittenAsItIsRead) {
  for (const Text& text : {Text("ABCD"), Text("MAC©"), Text("????"), Text("a  b")})
    EXPECT_EQ(this->subject.textOf(this->subject.codeOf(text)), text);
}

template <typename Subject>
struct DigestsContract : testing::Test {
  Subject subject;
};
TYPED_TEST_SUITE(DigestsContract, AllDigests);

TYPED_TEST(DigestsContract, Md5OfWhatEverybodyKnows) {
  for (const auto& [bytes, digest] : FakeDigests().known)
    EXPECT_EQ(this->subject.md5(bytes), digest) << bytes;
}

}  // namespace
}  // namespace halvorn
