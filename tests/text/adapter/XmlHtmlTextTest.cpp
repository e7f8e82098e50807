// What the library knows beyond the fake: real markup.
#include <gtest/gtest.h>

#include "KTStuff/CocoaExtensions/StringExtensions.h"
#include "Platform/text/posix/XmlHtmlText.h"
#include "tests/support/Desktop.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/TestFiles.h"
#include "tests/support/TextPrinting.h"

namespace halvorn {
namespace {

using namespace StringExtensions;

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

}  // namespace
}  // namespace halvorn
