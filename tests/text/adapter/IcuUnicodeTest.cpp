// What the library knows beyond the fake: all of Unicode.
#include <gtest/gtest.h>

#include "KTStuff/CocoaExtensions/StringExtensions.h"
#include "Platform/text/linux/IcuUnicode.h"
#include "tests/support/TextPrinting.h"

namespace halvorn {
namespace {

using namespace StringExtensions;

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

}  // namespace
}  // namespace halvorn
