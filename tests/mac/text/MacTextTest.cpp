// What the system's strings, character sets and keyboards do beyond what every system must.
#include <string>
#include <thread>

#include "KTStuff/CocoaExtensions/StringExtensionsHtml.h"
#include "Platform/text/mac/MacFourCharCodes.h"
#include "Platform/text/mac/MacHtmlText.h"
#include "Platform/text/mac/MacKeyboard.h"
#include "Platform/text/mac/MacLocalizedDates.h"
#include "Platform/text/mac/MacRegex.h"
#include "Platform/text/mac/MacTextCodecs.h"
#include "Platform/text/mac/MacUnicode.h"
#include "tests/mac/MacLoop.h"
#include "tests/mac/MacTest.h"
#include "tests/support/TextPrinting.h"

namespace halvorn {
namespace {

class MacText : public MacTest {
 protected:
  MacUnicode unicode;
  MacTextCodecs codecs;
  MacRegex regex;
  MacKeyboard keyboard;
};

TEST_F(MacText, ClassesReachBeyondTheFirstPlane) {
  EXPECT_TRUE(unicode.isLetter(U'\U00020000')) << "a Han character of the second plane";
  EXPECT_TRUE(unicode.isLetter(U'\u0301')) << "a mark";
  EXPECT_TRUE(unicode.isAlphanumeric(U'\u0663')) << "an Arabic digit";
  EXPECT_FALSE(unicode.isLetter(U'\U0001F600'));
  EXPECT_TRUE(unicode.isWhiteSpace(U'\u2028'));
  EXPECT_TRUE(unicode.isWhiteSpace(U'\u3000'));
  EXPECT_FALSE(unicode.isWhiteSpace(U'\u200B')) << "a space without width is none";
  EXPECT_TRUE(unicode.isUnassigned(U'\uFFFE'));
  EXPECT_FALSE(unicode.isUnassigned(0xD800)) << "a surrogate is a code of its own kind";
}

TEST_F(MacText, EachLoneSurrogateStaysWhereItWas) {
  const Text text(u"A\xD800É\xDC80\xDC80Z\xD83D\xDE00");
  EXPECT_EQ(unicode.caseFolded(text), Text(u"a\xD800é\xDC80\xDC80z\xD83D\xDE00"));
  EXPECT_EQ(unicode.decomposed(Text(u"\xDCFFé")), Text(u"\xDCFF"
                                                       u"e\u0301"));
}

TEST_F(MacText, AnEncodingThatTheSystemKnowsByNumberIsUsed) {
  EXPECT_EQ(codecs.decode("\x80", TextEncodings::windowsLatin1), Text("€"));
  EXPECT_EQ(codecs.encode("€", TextEncodings::windowsLatin1), "\x80");
  EXPECT_EQ(codecs.encodingForIanaName("windows-1252"), TextEncodings::windowsLatin1);
}

TEST_F(MacText, OneGuessIsMadeOfBytes) {
  const auto guesses = codecs.detectEncodings("Grüße");
  ASSERT_EQ(guesses.size(), 1U);
  EXPECT_EQ(guesses[0].encoding, TextEncodings::utf8);
  EXPECT_TRUE(codecs.detectEncodings("").empty());
}

TEST_F(MacText, TheOptionsOfAnExpressionAreTheSystemsOwn) {
  struct Finds : RegexVisitor {
    void found(const RegexMatch& match) override { all.push_back(match); }
    bool mayContinue() override { return true; }
    std::vector<RegexMatch> all;
  };
  const struct {
    const char* pattern;
    RegexOptions options;
    Text text;
    std::size_t count;
  } cases[] = {{"a", RegexOption::caseInsensitive, "aA", 2},
               {"a b", RegexOption::allowCommentsAndWhitespace, "ab", 1},
               {"a.", RegexOption::ignoreMetacharacters, "ab a.", 1},
               {"a.b", RegexOption::dotMatchesLineSeparators, "a\nb", 1},
               {"^a", RegexOption::anchorsMatchLines, "a\na", 2},
               {"a.b", RegexOption::useUnixLineSeparators, "a\rb", 1},
               {"a.b", 0, "a\nb", 0}};
  for (const auto& [pattern, options, text, count] : cases) {
    const auto compilation = regex.compile(pattern, options);
    ASSERT_NE(compilation.expression, nullptr) << pattern;
    Finds finds;
    EXPECT_EQ(compilation.expression->enumerateMatches(text, finds), std::nullopt);
    EXPECT_EQ(finds.all.size(), count) << pattern << " " << options;
  }
}

TEST_F(MacText, AnExpressionIsGivenBackWithItsLastUser) {
  const MacPool pool;
  const int before = liveInstances("NSRegularExpression");
  auto compilation = regex.compile("a", 0);
  EXPECT_EQ(liveInstances("NSRegularExpression"), before + 1);
  compilation.expression.reset();
  EXPECT_EQ(liveInstances("NSRegularExpression"), before);
}

TEST_F(MacText, AGroupThatTookNoPartIsNone) {
  struct Last : RegexVisitor {
    void found(const RegexMatch& match) override { last = match; }
    bool mayContinue() override { return true; }
    RegexMatch last;
  } visitor;
  const auto compilation = regex.compile("(a)|(b)", 0);
  EXPECT_EQ(compilation.expression->enumerateMatches("b", visitor), std::nullopt);
  ASSERT_EQ(visitor.last.groups.size(), 3U);
  EXPECT_EQ(visitor.last.groups[1], std::nullopt);
  EXPECT_EQ(visitor.last.groups[2], (TextRange{0, 1}));
}

TEST_F(MacText, PositionsAreThoseOfTheTextAlsoBehindALoneSurrogate) {
  struct Last : RegexVisitor {
    void found(const RegexMatch& match) override { last = match; }
    bool mayContinue() override { return true; }
    RegexMatch last;
  } visitor;
  EXPECT_EQ(regex.compile("z", 0).expression->enumerateMatches(Text(u"\xD800\xDC80"
                                                                    u"A\xDC80z"),
                                                               visitor),
            std::nullopt);
  ASSERT_EQ(visitor.last.groups.size(), 1U);
  EXPECT_EQ(visitor.last.groups[0], (TextRange{4, 1}));
}

TEST_F(MacText, AKeyboardWithoutALayoutTypesNothingKnown) {
  fakemac::state().keys = {{{0, 0}, u"a"}};
  fakemac::state().hasKeyboardLayout = false;
  EXPECT_EQ(keyboard.translate(0, 0, 40), std::nullopt);
  fakemac::state().hasKeyboardLayout = true;
  fakemac::state().layoutHasData = false;
  EXPECT_EQ(keyboard.translate(0, 0, 40), std::nullopt);
  fakemac::state().layoutHasData = true;
  EXPECT_EQ(keyboard.translate(0, 0, 41), Text("a"));
  EXPECT_EQ(fakemac::state().keyboardTypesAsked, std::vector<std::uint32_t>{41});
}

TEST_F(MacText, ModifiersGoAsTheyAreAndAKeyMayTypeUpToFourUnits) {
  fakemac::state().keys = {{{9, KeyModifier::shift | KeyModifier::option}, u"abcd"}};
  EXPECT_EQ(keyboard.translate(9, KeyModifier::shift | KeyModifier::option, 40), Text("abcd"));
  fakemac::state().keyboardType = 41;
  EXPECT_EQ(keyboard.type(), 41U);
}

TEST_F(MacText, ATextWithALoneSurrogateIsNoCode) {
  EXPECT_EQ(MacFourCharCodes().codeOf(Text(u"ab\xD800z")), 0U);
  EXPECT_EQ(MacFourCharCodes().textOf(0x4D4143A9), Text("MAC©"));
}

TEST_F(MacText, APageIsReadByTheSystemsImporterAsUnicode) {
  EXPECT_EQ(StringExtensions::stringByExpandingHTMLEntities(" <b>日</b>\n", MacHtmlText()), Text(" 日\n"));
  ASSERT_EQ(fakemac::state().importedPages.size(), 1U);
  const fakemac::ImportedPage& asked = fakemac::state().importedPages[0];
  EXPECT_EQ(asked.bytes.substr(0, 6), std::string("\xFF\xFE \0<\0", 6));
  EXPECT_EQ(asked.bytes.size(), 2U + 2 * Text(" <b>日</b>\n").length());
  EXPECT_EQ(asked.encoding, "utf-16");
  EXPECT_EQ(asked.seconds, MacHtmlText::kLongestImport);
}

TEST_F(MacText, NothingThatAPageNamesIsLoaded) {
  EXPECT_EQ(MacHtmlText().importedText("a<img src='http://example.org/a.png'>b"), Text("ab"));
  ASSERT_EQ(fakemac::state().importedPages.size(), 1U);
  EXPECT_EQ(fakemac::state().importedPages[0].resourcesLoaded, 0);
}

TEST_F(MacText, APageThatTheImporterDoesNotReadIsReadAsElsewhere) {
  for (const auto reader : {fakemac::PageReader::Refuses, fakemac::PageReader::Raises}) {
    fakemac::state().readsPages = reader;
    EXPECT_EQ(MacHtmlText().importedText("a<br>b"), std::nullopt);
    EXPECT_EQ(StringExtensions::stringByExpandingHTMLEntities("a<br>&eacute;", MacHtmlText()), Text("a\né"));
  }
}

TEST_F(MacText, TheImporterIsCalledOnTheMainThreadAlone) {
  OptionalText imported = Text("unasked");
  std::thread([&] { imported = MacHtmlText().importedText("a<br>b"); }).join();
  EXPECT_EQ(imported, std::nullopt);
  EXPECT_TRUE(fakemac::state().importedPages.empty());
}

TEST_F(MacText, ADayIsShownShortAndWithoutATime) {
  const auto shown = MacLocalizedDates().shortDate(Date{1'615'723'200});
  ASSERT_TRUE(shown);
  EXPECT_TRUE(shown->contains("21")) << shown->bytes();
  EXPECT_FALSE(shown->contains(":")) << shown->bytes();
}

}  // namespace
}  // namespace halvorn
