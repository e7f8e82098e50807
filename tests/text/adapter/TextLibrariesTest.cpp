// What the libraries know beyond the fakes: all of Unicode, whole expressions, real
// markup, the layout of a display.
#include <gtest/gtest.h>

#include "KTStuff/CocoaExtensions/StringExtensions.h"
#include "Platform/running/posix/PosixClock.h"
#include "Platform/text/linux/CryptoDigests.h"
#include "Platform/text/linux/IcuRegex.h"
#include "Platform/text/linux/IcuTextCodecs.h"
#include "Platform/text/linux/IcuUnicode.h"
#include "Platform/text/linux/XkbKeyboard.h"
#include "Platform/text/linux/XmlHtmlText.h"
#include "tests/fakes/RecordingLog.h"
#include "tests/support/Desktop.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/TestFiles.h"
#include "tests/support/TextPrinting.h"

namespace halvorn {
namespace {

using namespace StringExtensions;
using Lines = std::vector<std::string>;

TEST(IcuUnicode, WhiteSpaceIsThatOfTheUnicodeProperty) {
  const IcuUnicode unicode;
  std::u32string white;
  for (char32_t scalar = 0; scalar <= 0x10FFFF; ++scalar) {
    if (unicode.isWhiteSpace(scalar)) white.push_back(scalar);
  }
  EXPECT_EQ(white,
            U"\t\n\v\f\r \u0085\u00A0\u1680\u2000\u2001\u2002\u2003\u2004\u2005\u2006\u2007\u2008\u2009\u200A"
            U"\u2028\u2029\u202F\u205F\u3000");
}

TEST(IcuUnicode, KnowsLettersMarksNumbersAndWhatIsUnassigned) {
  const IcuUnicode unicode;
  for (const unsigned letter : {0x65E5, 0x416, 0x5D0, 0x3042, 0x301, 0x93E, 0x1D400, 0x20000}) {
    EXPECT_TRUE(unicode.isLetter(letter) && unicode.isAlphanumeric(letter)) << letter;
  }
  for (const unsigned number : {0x663, 0x2167, 0x2460, 0xBD}) {
    EXPECT_TRUE(!unicode.isLetter(number) && unicode.isAlphanumeric(number)) << number;
  }
  for (const unsigned none : {0x378, 0xFFFE, 0xFFFF, 0xFDD0, 0x10FFFF, 0xE0080}) {
    EXPECT_TRUE(unicode.isUnassigned(none)) << none;
  }
  for (const unsigned some : {0xD800, 0xDFFF, 0xE000, 0x20, 0x1F600}) {
    EXPECT_FALSE(unicode.isUnassigned(some)) << some;
  }
}

TEST(IcuUnicode, ControlCharactersOfEveryPlaneBecomeOneSpaceEach) {
  const IcuUnicode unicode;
  EXPECT_EQ(asSingleLine("a\u200Bb\u2060c\U000E0041d\u202Ee", unicode), Text("a b c d e"));
  EXPECT_EQ(asSingleLine("\u2003a\u2028b\u3000", unicode), Text("a\u2028b"));
  // The joiner is a format character: the sequence falls apart.
  EXPECT_EQ(asSingleLine("\U0001F468\u200D\U0001F467", unicode), Text("\U0001F468 \U0001F467"));
}

TEST(IcuUnicode, TrimsWhiteSpaceOfEveryWidth) {
  EXPECT_EQ(trimWhitespace("\u2003\u3000 a \u2028\u205F", IcuUnicode()).text(), Text("a"));
  EXPECT_EQ(trimWhitespace("\u200Ba", IcuUnicode()).text(),
            Text("\u200Ba"));  // no white space since Unicode 4.0.1
}

TEST(IcuUnicode, NumericComparisonKnowsAllScripts) {
  const IcuUnicode unicode;
  EXPECT_EQ(caseInsensitiveNumericCompare("Глава 9", "ГЛАВА 10", unicode), Ordering::Ascending);
  EXPECT_EQ(caseInsensitiveNumericCompare("ΣΊΣΥΦΟΣ", "σίσυφος", unicode), Ordering::Same);
  EXPECT_EQ(numericCompare("\u1EAD", "a\u0302\u0323", unicode), Ordering::Same);  // marks in either order
  EXPECT_EQ(numericCompare("Å10", "\u212B9", unicode), Ordering::Descending);     // the Ångström sign
}

TEST(IcuTextCodecs, KnowsNamesAliasesAndOtherEncodings) {
  const IcuTextCodecs codecs;
  const std::pair<const char*, TextEncoding> rows[] = {
      {"utf8", 4},
      {"latin1", 5},
      {"mac", 30},
      {"windows-1252", 12},
      {"cp1252", 12},
      {"Shift_JIS", 8},
      {"EUC-JP", 3},
      {"iso-8859-2", 9},
      {"KOI8-R", 0x80000A02},
      {"big5", 0x80000A03},
      {"gb18030", 0x80000632},
      {"iso-8859-15", 0x8000020F},
      {"UTF-32BE", 0x98000100},
      {"iso-2022-jp", 21},
  };
  for (const auto& [name, encoding] : rows) EXPECT_EQ(codecs.encodingForIanaName(name), encoding) << name;
  EXPECT_EQ(codecs.decode("\x93\xFA\x96\x7B", 8), Text("日本"));
  EXPECT_EQ(codecs.encode("€", 12), "\x80");
  EXPECT_EQ(codecs.encode("Привет", 0x80000A02), "\xF0\xD2\xC9\xD7\xC5\xD4");
}

TEST(IcuTextCodecs, ControlCharactersAreThemselvesInEveryEncodingThatHoldsAscii) {
  const IcuTextCodecs codecs;
  int count = 0;
  for (const char* const name :
       {"Shift_JIS",    "IBM437",       "IBM850",       "IBM852",       "IBM866",         "ISO-2022-KR",
        "ISO-2022-JP",  "EUC-JP",       "EUC-KR",       "GBK",          "GB2312",         "GB18030",
        "Big5",         "KOI8-R",       "KOI8-U",       "macintosh",    "x-mac-cyrillic", "windows-1250",
        "windows-1251", "windows-1252", "windows-1253", "windows-1254", "windows-1255",   "windows-1256",
        "windows-1257", "windows-1258", "ISO-8859-1",   "ISO-8859-2",   "ISO-8859-3",     "ISO-8859-4",
        "ISO-8859-5",   "ISO-8859-6",   "ISO-8859-7",   "ISO-8859-8",   "ISO-8859-9",     "ISO-8859-13",
        "ISO-8859-15",  "US-ASCII",     "UTF-8"}) {
    const auto encoding = codecs.encodingForIanaName(name);
    ASSERT_TRUE(encoding) << name;
    const bool isStateful = std::string_view(name).starts_with("ISO-2022");
    for (char16_t unit = 0; unit < 0x80; ++unit) {
      // Escape and the two shifts are not text there.
      if (isStateful && (unit == 0x0E || unit == 0x0F || unit == 0x1B)) continue;
      const std::string byte(1, static_cast<char>(unit));
      const Text text(std::u16string(1, unit));
      EXPECT_EQ(codecs.decode(byte, *encoding), text) << name << " " << static_cast<int>(unit);
      const auto encoded = codecs.encode(text, *encoding);
      ASSERT_TRUE(encoded) << name << " " << static_cast<int>(unit);
      // ISO-2022-KR announces itself first.
      EXPECT_TRUE(encoded->ends_with(byte)) << name << " " << static_cast<int>(unit);
      ++count;
    }
  }
  EXPECT_EQ(count, 39 * 128 - 2 * 3);
}

TEST(IcuTextCodecs, ControlCharactersAmongOthersComeBackAsTheyWere) {
  const IcuTextCodecs codecs;
  const std::pair<const char*, const char*> rows[] = {{"Shift_JIS", "\x1A\x93\xFA\x1C\x96\x7B\x7F"},
                                                      {"IBM437", "\x84\x1A\x94\x7F\x81"},
                                                      {"IBM866", "\x8F\x1C\xE0"}};
  const Text texts[] = {"\u001A日\u001C本\u007F", "ä\u001Aö\u007Fü", "П\u001Cр"};
  for (std::size_t i = 0; i < std::size(rows); ++i) {
    const auto encoding = codecs.encodingForIanaName(rows[i].first);
    ASSERT_TRUE(encoding);
    EXPECT_EQ(codecs.decode(rows[i].second, *encoding), texts[i]) << rows[i].first;
    EXPECT_EQ(codecs.encode(texts[i], *encoding), rows[i].second) << rows[i].first;
  }
}

TEST(IcuTextCodecs, TheSignOfTheWonIsNoBackslash) {
  const IcuTextCodecs codecs;
  const auto korean = codecs.encodingForIanaName("ISO-2022-KR");
  ASSERT_TRUE(korean);
  EXPECT_EQ(codecs.encode("₩", *korean), std::nullopt) << "it would come back as a backslash";
  EXPECT_EQ(codecs.decode("\x1B$)Ca\\b\x0E\x30\x21\x0F", *korean), Text("a\\b가"));
}

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

TEST(XmlHtmlText, ResolvesMarkupAsABrowserShowsIt) {
  const XmlHtmlText html;
  const std::pair<const char*, const char*> rows[] = {
      {"a &amp; b", "a & b"},
      {"&eacute;&nbsp;&#x1F600;&#233;&apos;&hellip;&euro;&Alpha;", "é\u00A0\U0001F600é'…€Α"},
      {"<p>a</p><p>b", "a\nb"},
      {"<UL><LI>a<LI>b</UL>c", "a\nb\nc"},
      {"<table><tr><td>1<td>2<tr><td>3</table>", "1\t2\n3"},
      {"<pre>\n a\n  b</pre>x", " a\n  b\nx"},
      {"<b><i>x</b>y</i>", "xy"},
      {"a < b & c > d", "a < b & c > d"},
      {"x<!-- no --><script>if (a<b) c();</script><style>p{}</style>y", "xy"},
      {"<head><title>t</title><meta charset=latin1></head><body>é", "é"},
      {"&nosuch; &# &#x; &#xZ; 100%", "&nosuch; &# &#x; &#xZ; 100%"},
      {"a\x01"
       "b",
       "a\uFFFD"
       "b"},
  };
  for (const auto& [page, text] : rows)
    EXPECT_EQ(stringByExpandingHTMLEntities(page, html), Text(text)) << page;
}

// What another reader of the standard's table makes of the page, as UTF-8.
std::string asAnotherReaderHasIt(const std::string& script) {
  const CommandResult result = runCommand({"python3", "-c", "import html, html.entities\n" + script});
  EXPECT_EQ(result.status, 0) << result.output;
  return result.output;
}

TEST(XmlHtmlText, EveryNameOfTheStandardIsResolved) {
  if (!programExists("python3")) GTEST_SKIP() << "python3 is not installed";
  // "&name;" and what it stands for, written in hexadecimal, a line for each.
  const std::string rows = asAnotherReaderHasIt(
      "for name, value in sorted(html.entities.html5.items()):\n"
      "    print('&' + name, ' '.join('%X' % ord(scalar) for scalar in value))");
  const XmlHtmlText html;
  int count = 0;
  for (const Text& row : Text(rows).split(u'\n')) {
    if (row.isEmpty()) continue;
    const std::vector<Text> words = row.split(u' ');
    Text expected;
    for (std::size_t i = 1; i < words.size(); ++i) {
      expected =
          expected + Text::fromScalar(static_cast<char32_t>(std::stoul(words[i].bytes(), nullptr, 16)));
    }
    const Text page = Text("<pre>x") + words[0] + Text(".</pre>");
    EXPECT_EQ(stringByExpandingHTMLEntities(page, html), Text("x") + expected + Text("."))
        << words[0].bytes();
    ++count;
  }
  EXPECT_EQ(count, 2231) << "2125 names, and 106 of them without the semicolon";
}

TEST(XmlHtmlText, TheLongestNameCountsAndWhatIsNoneStaysAsItIsWritten) {
  if (!programExists("python3")) GTEST_SKIP() << "python3 is not installed";
  // Names, beginnings of names, and what may follow them; those of white space would end a line of the page.
  const std::string page = asAnotherReaderHasIt(
      "import random\n"
      "chance = random.Random(10)\n"
      "names = sorted(set(html.entities.html5) - {'NewLine;', 'Tab;'})\n"
      "ends = ['', ';', 'x', 'in;', '&', 'It', '1', ' a', '#', '; ']\n"
      "for round in range(3000):\n"
      "    name = chance.choice(names)\n"
      "    print('&' + name[:chance.randint(1, len(name))] + chance.choice(ends) + '.')");
  const TemporaryFolder folder;
  const std::string file = putFile(folder / "page", page);
  const std::string expected =
      asAnotherReaderHasIt("print(html.unescape(open('" + file + "').read()), end='')");
  const std::vector<Text> pages = Text(page).split(u'\n');
  const std::vector<Text> texts = Text(expected).split(u'\n');
  ASSERT_EQ(pages.size(), 3001u);
  ASSERT_EQ(texts.size(), pages.size());
  for (std::size_t i = 0; i < pages.size(); ++i) {
    const Text shown =
        stringByExpandingHTMLEntities(Text("<pre>x") + pages[i] + Text("</pre>"), XmlHtmlText());
    EXPECT_EQ(shown, Text("x") + texts[i]) << pages[i].bytes();
  }
}

TEST(XmlHtmlText, NumbersAreResolvedAsBrowsersDo) {
  const XmlHtmlText html;
  const std::pair<const char*, Text> rows[] = {
      {"&#147;a&#148; &#150;&#x97;&#133;&#128;", "“a” –—…€"},
      {"&#129;&#141;&#143;&#144;&#157;", "\u0081\u008D\u008F\u0090\u009D"},
      {"&#159;&#160;&#130", "Ÿ\u00A0‚"},
      {"&#0;&#xD800;&#xDFFF;&#x110000;&#99999999999999999999;", "\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD"},
      {"&#1;&#x1F;&#xFFFF;", "\uFFFD\uFFFD\uFFFD"},
      {"&#65x&#x41;&#X41;&#0065;&#60;b&#62;", "AxAAA<b>"},
      {"&amp;lt;&amp;#60;&#38;lt;&#38;amp;", "&lt;&#60;&lt;&amp;"},
      {"&lt;b&gt;x&LT;/b&GT;&quot;&apos;&amp", "<b>x</b>\"'&"},
      {"<a title=\"&quot;>&lt;&#34;&#62;\" href='?a=1&copy=2&apos;>'>x</a>", "x"},
      {"<!-- &gt; --&gt; -->x<script>&lt;/script&gt;</script>y", "xy"},
  };
  for (const auto& [page, text] : rows) EXPECT_EQ(stringByExpandingHTMLEntities(page, html), text) << page;
}

TEST(XmlHtmlText, EveryStartHasItsEndAlsoWhereAPageBreaksOffWithinATag) {
  class Balance : public HtmlVisitor {
   public:
    void startElement(std::string_view name) override { open.emplace_back(name); }
    void endElement(std::string_view name) override {
      ASSERT_FALSE(open.empty());
      EXPECT_EQ(open.back(), name);
      open.pop_back();
    }
    void characters(const Text&) override {}
    std::vector<std::string> open;
  };
  for (const char* const page :
       {"a<b", "<pre> a <c --> b</pr><e", "<b><i>x</b>y</i>", "<p>a<", "<table><td>a<x y="}) {
    Balance balance;
    EXPECT_EQ(XmlHtmlText().read(page, balance), HtmlAnswer::Read) << page;
    EXPECT_TRUE(balance.open.empty()) << page;
  }
}

TEST(XmlHtmlText, LoneSurrogatesAndZerosBecomeTheReplacementCharacter) {
  const Text page(std::u16string(u"a\xD800\0b", 4));
  EXPECT_EQ(stringByExpandingHTMLEntities(page, XmlHtmlText()), Text("a\uFFFD\uFFFD"
                                                                     "b"));
}

TEST(CryptoDigests, AgreesWithTheTestsOfItsStandard) {
  const CryptoDigests digests;
  const std::pair<const char*, const char*> rows[] = {
      {"", "d41d8cd98f00b204e9800998ecf8427e"},
      {"a", "0cc175b9c0f1b6a831c399e269772661"},
      {"message digest", "f96b697d7cb7938d525a2f31aaf161d0"},
      {"12345678901234567890123456789012345678901234567890123456789012345678901234567890",
       "57edf4a22be3c955ac49da2e2107b67a"},
      {"Größe", "d248453369cf82a6a64617f1357089c5"},
  };
  for (const auto& [text, digest] : rows) EXPECT_EQ(MD5String(text, digests), Text(digest)) << text;
}

class KeyboardOfADisplay : public testing::Test {
 protected:
  static constexpr DesktopParts kParts{.windowManager = false, .bus = false};
  void SetUp() override {
    if (const auto missing = Desktop::missing(kParts)) GTEST_SKIP() << *missing;
    desktop_ = std::make_unique<Desktop>(kParts);
  }
  void setLayout(const std::vector<std::string>& arguments) {
    std::vector<std::string> command = {"setxkbmap"};
    command.insert(command.end(), arguments.begin(), arguments.end());
    ChildProcess program(command, {.environment = desktop_->environment()});
    ASSERT_EQ(program.waitForEnd(20), 0) << program.output();
  }
  std::unique_ptr<Desktop> desktop_;
};

TEST_F(KeyboardOfADisplay, KeysTypeWhatTheLayoutSays) {
  const XkbKeyboard keyboard(desktop_->displayName());
  const auto typed = [&](std::uint16_t key, KeyModifiers modifiers = 0) {
    return stringWithVirtualKeyCode(key, modifiers, keyboard);
  };
  constexpr std::uint16_t kA = 0x00, kZ = 0x06, kQ = 0x0C, kE = 0x0E, kMinus = 0x1B, kGrave = 0x32, k2 = 0x13;
  setLayout({"us"});
  EXPECT_EQ(typed(kA), Text("a"));
  EXPECT_EQ(typed(kA, KeyModifier::shift), Text("A"));
  EXPECT_EQ(typed(kA, KeyModifier::capsLock), Text("A"));
  EXPECT_EQ(typed(k2, KeyModifier::capsLock), Text("2"));
  EXPECT_EQ(typed(k2, KeyModifier::shift), Text("@"));
  EXPECT_EQ(typed(kA, KeyModifier::command), Text("a"));
  EXPECT_EQ(typed(kA, KeyModifier::control), Text("\x01"));
  EXPECT_EQ(typed(kGrave), Text("`"));
  EXPECT_EQ(typed(kMinus), Text("-"));

  // The same object sees the change.
  setLayout({"de"});
  EXPECT_EQ(typed(kZ), Text("y"));
  EXPECT_EQ(typed(kMinus), Text("ß"));
  EXPECT_EQ(typed(kE, KeyModifier::option), Text("€"));
  EXPECT_EQ(typed(kQ, KeyModifier::option), Text("@"));
  EXPECT_EQ(typed(kGrave), Text(""));  // a dead key by itself

  setLayout({"fr"});
  EXPECT_EQ(typed(kA), Text("q"));
  EXPECT_EQ(typed(k2), Text("é"));
  EXPECT_EQ(typed(k2, KeyModifier::shift), Text("2"));

  setLayout({"us,ru"});
  EXPECT_EQ(typed(kA), Text("a"));
}

TEST_F(KeyboardOfADisplay, EveryLetterDigitAndKeypadKeyIsInItsPlace) {
  const XkbKeyboard keyboard(desktop_->displayName());
  setLayout({"us"});
  const std::uint16_t letters[] = {0x00, 0x0B, 0x08, 0x02, 0x0E, 0x03, 0x05, 0x04, 0x22,
                                   0x26, 0x28, 0x25, 0x2E, 0x2D, 0x1F, 0x23, 0x0C, 0x0F,
                                   0x01, 0x11, 0x20, 0x09, 0x0D, 0x07, 0x10, 0x06};
  for (std::size_t i = 0; i < std::size(letters); ++i) {
    EXPECT_EQ(stringWithVirtualKeyCode(letters[i], 0, keyboard),
              Text::fromScalar(static_cast<char32_t>(U'a' + i)));
  }
  const std::uint16_t digits[] = {0x1D, 0x12, 0x13, 0x14, 0x15, 0x17, 0x16, 0x1A, 0x1C, 0x19};
  const std::uint16_t keypad[] = {0x52, 0x53, 0x54, 0x55, 0x56, 0x57, 0x58, 0x59, 0x5B, 0x5C};
  for (std::size_t i = 0; i < 10; ++i) {
    const Text digit = Text::fromScalar(static_cast<char32_t>(U'0' + i));
    EXPECT_EQ(stringWithVirtualKeyCode(digits[i], 0, keyboard), digit);
    EXPECT_EQ(stringWithVirtualKeyCode(keypad[i], 0, keyboard), digit);
  }
}

TEST_F(KeyboardOfADisplay, AKeyThatDoesNotExistGivesTheTextERR) {
  const XkbKeyboard keyboard(desktop_->displayName());
  for (const std::uint16_t key : {0x34, 0x42, 0x7F, 0x80, 0xFFFF}) {
    EXPECT_EQ(stringWithVirtualKeyCode(key, 0, keyboard), Text("<ERR>")) << key;
  }
}

TEST(KeyboardWithoutADisplay, EveryKeyGivesTheTextERR) {
  const XkbKeyboard keyboard(":65535");
  EXPECT_EQ(stringWithVirtualKeyCode(0x00, 0, keyboard), Text("<ERR>"));
}

TEST_F(KeyboardOfADisplay, AKeyboardWhoseDisplayIsGoneGivesTheTextERR) {
  const XkbKeyboard keyboard(desktop_->displayName());
  EXPECT_EQ(stringWithVirtualKeyCode(0x00, 0, keyboard), Text("a"));
  desktop_->xServer()->end();
  EXPECT_EQ(stringWithVirtualKeyCode(0x00, 0, keyboard), Text("<ERR>"));
}

}  // namespace
}  // namespace halvorn
