// Markup, percent escapes, digests, keys.
#include <gtest/gtest.h>

#include "KTStuff/CocoaExtensions/StringExtensions.h"
#include "tests/fakes/FakeDigests.h"
#include "tests/fakes/FakeHtmlText.h"
#include "tests/fakes/FakeKeyboard.h"
#include "tests/support/TextPrinting.h"

namespace halvorn {
namespace {

using namespace StringExtensions;

struct Row {
  Text text;
  Text expected;
  const char* reason;
};

TEST(StringByExpandingHTMLEntities, ResolvesEntitiesAndMarkup) {
  const FakeHtmlText html;
  const Row rows[] = {
      {"a &amp; b &lt;c&gt;", "a & b <c>", "named entities"},
      {"&#65;&#x1F600;&eacute;", "A\U0001F600é", "numbers and accents"},
      {"a&nbsp;", "a\u00A0", "a no-break space is no white space to collapse"},
      {"a <b>b</b> c", "a b c", "inline elements"},
      {"  a \n\t b  ", "a b", "white space in a row is one space, none at the ends"},
      {"a<br>b<br/>c", "a\nb\nc", "line breaks"},
      {"a<br><br>b", "a\n\nb", "an empty line"},
      {"<p>a</p> <p>b</p>", "a\nb", "one break between blocks"},
      {"<div><p>a</p></div><p>b</p>", "a\nb", "however many begin and end there"},
      {"<p>a<br></p><p>b</p>", "a\nb", "the break at the end of a block is the block's"},
      {"<p>a</p><br><p>b</p>", "a\n\nb", "a break between blocks is a line"},
      {"<br>a<br>", "a", "no break at either end"},
      {"<ul><li>a</li><li>b</li></ul>", "a\nb", "list items"},
      {"a<menu>b</menu>c<men>d</men>", "a\nb\ncd", "a menu is a list"},
      {"a<dialog>b</dialog><hgroup>c</hgroup><xmp>d</xmp><optgroup>e</optgroup><search>f</search>g",
       "a\nb\nc\nd\ne\nf\ng", "rarer blocks"},
      {"<table><tr><td>a</td><td></td><td>b</td></tr><tr><td>c</td></tr></table>", "a\t\tb\nc",
       "cells and rows"},
      {"<table><tr><td>a</td><td></td></tr><tr><td>c</td></tr></table>", "a\nc",
       "an empty cell at the end of its row"},
      {"<pre>a  b\n  c\r\nd</pre>e", "a  b\n  c\nd\ne", "preformatted text keeps its white space"},
      {"x<pre>\na\n\nb\n</pre>", "x\na\n\nb", "but for the breaks directly inside"},
      {"<head><title>t</title></head>a<script>s</script><style>s</style>b", "ab", "what is not shown"},
      {"", "", "nothing"},
      {"<p> </p>", "", "nothing that is shown"},
  };
  for (const Row& row : rows)
    EXPECT_EQ(stringByExpandingHTMLEntities(row.text, html), row.expected) << row.reason;
}

TEST(StringByExpandingHTMLEntities, WhatTheSystemImportsIsTakenAsItIs) {
  FakeHtmlText html;
  html.imported = Text(" imported\n");
  EXPECT_EQ(stringByExpandingHTMLEntities("<p>a", html), Text(" imported\n"));
  const Text same = " imported\n";
  EXPECT_TRUE(stringByExpandingHTMLEntities(same, html).isSameObject(same)) << "nothing was there to expand";
}

TEST(StringByExpandingHTMLEntities, NothingToExpandReturnsTheReceiver) {
  const Text text = "plain text";
  EXPECT_TRUE(stringByExpandingHTMLEntities(text, FakeHtmlText()).isSameObject(text));
}

TEST(StringByExpandingHTMLEntities, WhatCannotBeReadAsHTMLReturnsTheReceiver) {
  FakeHtmlText html;
  for (const HtmlAnswer answer : {HtmlAnswer::NestedTooDeeply, HtmlAnswer::Failed}) {
    html.answer = answer;
    const Text text = "a<br>b";
    EXPECT_TRUE(stringByExpandingHTMLEntities(text, html).isSameObject(text));
  }
}

TEST(StringWithExpandedPercentEscapes, DecodesUtf8) {
  const Row rows[] = {
      {"a%20b", "a b", "a space"},
      {"%C3%A4%e2%82%ac%F0%9F%98%80", "ä€\U0001F600", "two, three and four bytes, digits in any case"},
      {"%41ä%42", "AäB", "what is not escaped stays"},
      {"%25%41", "%A", "decoded once"},
      {"%7F%00", Text(std::u16string(u"\x7F\0", 2)), "control characters too"},
  };
  for (const Row& row : rows)
    EXPECT_EQ(stringWithExpandedPercentEscapes(row.text), row.expected) << row.reason;
}

TEST(StringWithExpandedPercentEscapes, InvalidEscapesReturnTheReceiver) {
  const Text texts[] = {"100%",      "%4",           "%",      "%zz",       "%4g",    "a%20b%",
                        "%C3",       "%C3x",         "%C3%20", "%A4",       "%C0%AF", "%E2%82",
                        "%ED%A0%80", "%F4%90%80%80", "%FF",    "%F0%9F%98", "% 41",   "%+1"};
  for (const Text& text : texts)
    EXPECT_TRUE(stringWithExpandedPercentEscapes(text).isSameObject(text)) << text.bytes();
}

TEST(StringWithExpandedPercentEscapes, WithoutAnEscapeItIsTheReceiver) {
  const Text text = "abc ä";
  EXPECT_TRUE(stringWithExpandedPercentEscapes(text).isSameObject(text));
}

TEST(StringWithPercentEscapes, TheResultIsTheSameWhetherTheInputWasEscapedOrNot) {
  EXPECT_EQ(stringWithPercentEscapes("a b"), Text("a%20b"));
  EXPECT_EQ(stringWithPercentEscapes("a%20b"), Text("a%20b"));
  EXPECT_EQ(stringWithPercentEscapes("%c3%a4"), Text("%C3%A4"));
}

TEST(StringWithPercentEscapes, EscapesAllThatMayNotStandInAUrl) {
  const Row rows[] = {
      {"\"#%<>[\\]^`{|} ", "%22%23%25%3C%3E%5B%5C%5D%5E%60%7B%7C%7D%20", "the ASCII ones"},
      {"\x01\x7F", "%01%7F", "control characters"},
      {"\u0080", "%C2%80", "the first of two bytes"},
      {"ä€\U0001F600", "%C3%A4%E2%82%AC%F0%9F%98%80", "everything else, as UTF-8"},
      {"100%", "100%25", "what could not be decoded is escaped as it stands"},
      {"50%zz%20", "50%25zz%2520", "all of it"},
  };
  for (const Row& row : rows) EXPECT_EQ(stringWithPercentEscapes(row.text), row.expected) << row.reason;
}

TEST(StringWithPercentEscapes, WhatMayStandInAUrlReturnsTheReceiver) {
  const Text text = "http://me@host:80/a-b_c.d!e~f*g'(h);i?j=k&l+m,n$o";
  EXPECT_TRUE(stringWithPercentEscapes(text).isSameObject(text));
  const Text escaped = "a%20b";
  EXPECT_TRUE(stringWithPercentEscapes(escaped).isSameObject(escaped));
}

TEST(StringWithPercentEscapes, ALoneSurrogateReturnsTheReceiver) {
  for (const Text& text : {Text(u" \xD83D"), Text(u" \xDE00 "), Text(u"\xD83D x")}) {
    EXPECT_TRUE(stringWithPercentEscapes(text).isSameObject(text));
  }
}

TEST(MD5String, Is32LowerCaseHexadecimalDigits) {
  const FakeDigests digests;
  EXPECT_EQ(MD5String("", digests), Text("d41d8cd98f00b204e9800998ecf8427e"));
  EXPECT_EQ(MD5String("abc", digests), Text("900150983cd24fb0d6963f7d28e17f72"));
}

TEST(MD5String, TheBytesEndAtTheFirstZeroByte) {
  EXPECT_EQ(MD5String(Text(std::u16string(u"abc\0def", 7)), FakeDigests()),
            Text("900150983cd24fb0d6963f7d28e17f72"));
}

TEST(MD5String, IsEmptyWhereTheSystemRefusesTheDigest) {
  EXPECT_EQ(MD5String("unknown", FakeDigests()), Text(""));
}

TEST(StringWithVirtualKeyCode, IsWhatTheKeyTypes) {
  FakeKeyboard keyboard;
  keyboard.keys[{0x00, 0}] = "a";
  keyboard.keys[{0x00, KeyModifier::shift}] = "A";
  keyboard.keys[{0x7E, 0}] = "";
  EXPECT_EQ(stringWithVirtualKeyCode(0x00, 0, keyboard), Text("a"));
  EXPECT_EQ(stringWithVirtualKeyCode(0x00, KeyModifier::shift, keyboard), Text("A"));
  EXPECT_EQ(stringWithVirtualKeyCode(0x7E, 0, keyboard), Text(""));
}

TEST(StringWithVirtualKeyCode, AnErrorGivesTheTextERR) {
  EXPECT_EQ(stringWithVirtualKeyCode(0x00, 0, FakeKeyboard()), Text("<ERR>"));
}

TEST(StringWithVirtualKeyCode, AtMost4UnitsAreTaken) {
  FakeKeyboard keyboard;
  keyboard.keys[{1, 0}] = "abcd";
  keyboard.keys[{2, 0}] = "abcde";
  EXPECT_EQ(stringWithVirtualKeyCode(1, 0, keyboard), Text("abcd"));
  EXPECT_EQ(stringWithVirtualKeyCode(2, 0, keyboard), Text("<ERR>"));
}

TEST(StringWithVirtualKeyCode, TheModifiersAreHandedOnUntouchedWithTheLow8BitsOfTheKeyboardType) {
  FakeKeyboard keyboard;
  keyboard.keyboardType = 0x12345629;
  keyboard.keys[{5, 0xDEADBEEF}] = "x";
  EXPECT_EQ(stringWithVirtualKeyCode(5, 0xDEADBEEF, keyboard), Text("x"));
  ASSERT_EQ(keyboard.asked.size(), 1u);
  EXPECT_EQ(keyboard.asked[0],
            std::make_tuple(std::uint16_t{5}, KeyModifiers{0xDEADBEEF}, std::uint8_t{0x29}));
}

}  // namespace
}  // namespace halvorn
