// Escapes put in and taken out, source literals.
#include <gtest/gtest.h>

#include "KTStuff/CocoaExtensions/StringExtensions.h"
#include "tests/support/TextPrinting.h"

namespace halvorn {
namespace {

using namespace StringExtensions;

// Made before main(), as the constants of a program that uses the library are.
const Text kTakenByAnInitialiser = KTEscapeCharacters;

TEST(KTEscapeCharacters, AreLineFeedReturnTabAndBackslash) {
  EXPECT_EQ(KTEscapeCharacters, Text("\n\r\t\\"));
}

TEST(KTEscapeCharacters, AreThereForTheInitialisersOfOtherObjects) {
  EXPECT_EQ(kTakenByAnInitialiser, Text("\n\r\t\\"));
  EXPECT_TRUE(kTakenByAnInitialiser.isSameObject(KTEscapeCharacters));
}

TEST(StringByEscapingCharacters, ControlCharactersBecomeLettersAndOthersGetABackslash) {
  EXPECT_EQ(stringByEscapingCharacters("a\tb", KTEscapeCharacters), Text("a\\tb"));
  EXPECT_EQ(stringByEscapingCharacters("a\rb", KTEscapeCharacters), Text("a\\rb"));
  EXPECT_EQ(stringByEscapingCharacters("a\nb", KTEscapeCharacters), Text("a\\nb"));
  EXPECT_EQ(stringByEscapingCharacters("a\\b", KTEscapeCharacters), Text("a\\\\b"));
  EXPECT_EQ(stringByEscapingCharacters("say \"hi", "\""), Text("say \\\"hi"));
  EXPECT_EQ(stringByEscapingCharacters("ä", "ä"), Text("\\ä"));
}

TEST(StringByEscapingCharacters, NothingToEscapeReturnsTheReceiver) {
  const Text text = "abc";
  EXPECT_TRUE(stringByEscapingCharacters(text, KTEscapeCharacters).isSameObject(text));
  EXPECT_TRUE(stringByEscapingCharacters(text, "").isSameObject(text));
}

// From the second escape on, positions of the receiver are applied to the copy that has grown.
TEST(StringByEscapingCharacters, TheSearchRunsOverTheReceiverWithPositionsOfTheCopy) {
  // The second tab is at 3 in the receiver; there the copy has the b.
  EXPECT_EQ(stringByEscapingCharacters("a\tb\tc", "\t"), Text("a\\t\\b\tc"));
  // The tab right behind an escape is passed over.
  EXPECT_EQ(stringByEscapingCharacters("a\t\tb", "\t"), Text("a\\t\tb"));
  // Two units passed over, then the positions drift by one with each escape.
  EXPECT_EQ(stringByEscapingCharacters("\t\t\t\t\t", "\t"), Text("\\t\\t\\t\t\t"));
}

TEST(StringByEscapingCharacters, TheSearchEndsAtTheReceiversEnd) {
  EXPECT_EQ(stringByEscapingCharacters("\tab\t", "\t"), Text("\\ta\\b\t"));
  EXPECT_EQ(stringByEscapingCharacters("\t\t", "\t"), Text("\\t\t"));
  EXPECT_EQ(stringByEscapingCharacters("\t", "\t"), Text("\\t"));
}

TEST(StringByExpandingEscapedCharacters, BackslashesAreTakenOffTheGivenCharacters) {
  EXPECT_EQ(stringByExpandingEscapedCharacters("a\\tb\\\\c", KTEscapeCharacters), Text("a\tb\\c"));
  EXPECT_EQ(stringByExpandingEscapedCharacters("\\n\\r\\t", KTEscapeCharacters), Text("\n\r\t"));
  EXPECT_EQ(stringByExpandingEscapedCharacters("say \\\"hi\\\"", "\""), Text("say \"hi\""));
}

TEST(StringByExpandingEscapedCharacters, EqualCharactersInAnotherObjectMeanTheSame) {
  const Text same(std::u16string(KTEscapeCharacters.units()));
  ASSERT_FALSE(same.isSameObject(KTEscapeCharacters));
  EXPECT_EQ(stringByExpandingEscapedCharacters("a\\tb\\\\c\\n\\r", same), Text("a\tb\\c\n\r"));
}

TEST(StringByExpandingEscapedCharacters, TheUnitJustProducedIsNotLookedAtAgain) {
  EXPECT_EQ(stringByExpandingEscapedCharacters("\\\\n", KTEscapeCharacters), Text("\\n"));
}

TEST(StringByExpandingEscapedCharacters, ABackslashBeforeAnythingElseStays) {
  EXPECT_EQ(stringByExpandingEscapedCharacters("\\q\\t", KTEscapeCharacters), Text("\\q\t"));
  // Without the backslash among the characters, the second of two may begin an escape.
  EXPECT_EQ(stringByExpandingEscapedCharacters("\\\\t", "\t"), Text("\\\t"));
  EXPECT_EQ(stringByExpandingEscapedCharacters("\\t\\n", "\t"), Text("\t\\n"));
}

TEST(StringByExpandingEscapedCharacters, TheLettersThemselvesStandForControlCharacters) {
  EXPECT_EQ(stringByExpandingEscapedCharacters("a\\nb", "n"), Text("a\nb"));
}

TEST(StringByExpandingEscapedCharacters, NothingToExpandReturnsTheReceiver) {
  for (const Text& text : {Text(""), Text("\\"), Text("x"), Text("abc"), Text("\\q"), Text("ab\\")}) {
    EXPECT_TRUE(stringByExpandingEscapedCharacters(text, KTEscapeCharacters).isSameObject(text))
        << text.bytes();
  }
}

TEST(StringByReplacingUnescapedOccurrences, AnEvenNumberOfBackslashesLeavesItUnescaped) {
  const auto replaced = [](const Text& text) {
    return stringByReplacingUnescapedOccurrencesOfString(text, "x", "y");
  };
  EXPECT_EQ(replaced("x"), Text("y"));
  EXPECT_EQ(replaced("\\x"), Text("\\x"));
  EXPECT_EQ(replaced("\\\\x"), Text("\\\\y"));
  EXPECT_EQ(replaced("\\\\\\x"), Text("\\\\\\x"));
  EXPECT_EQ(replaced("xax\\xx"), Text("yay\\xy"));
}

TEST(StringByReplacingUnescapedOccurrences, NoOccurrenceOrOnlyEscapedOnesReturnTheReceiver) {
  for (const Text& text : {Text("abc"), Text(""), Text("\\x")}) {
    EXPECT_TRUE(stringByReplacingUnescapedOccurrencesOfString(text, "x", "y").isSameObject(text))
        << text.bytes();
  }
  const Text text = "abc";
  EXPECT_TRUE(stringByReplacingUnescapedOccurrencesOfString(text, "", "y").isSameObject(text));
}

TEST(StringByReplacingUnescapedOccurrences, EqualLengthsAreExact) {
  EXPECT_EQ(stringByReplacingUnescapedOccurrencesOfString("ab-ab-\\ab-ab", "ab", "XY"),
            Text("XY-XY-\\ab-XY"));
}

// After a replacement of another length, positions of the receiver are applied to a result that has moved.
TEST(StringByReplacingUnescapedOccurrences, TheSearchRunsOverTheReceiverWithPositionsOfTheResult) {
  // Longer: the second x is at 2 in the receiver; there the result has the second y.
  EXPECT_EQ(stringByReplacingUnescapedOccurrencesOfString("x-x", "x", "yyy"), Text("yyyyy-x"));
  // Shorter: the second "xx" is at 3 in the receiver; there the result "y-xx-" has "x-".
  EXPECT_EQ(stringByReplacingUnescapedOccurrencesOfString("xx-xx-", "xx", "y"), Text("y-xy"));
}

TEST(StringByReplacingUnescapedOccurrences, TheSearchEndsWhereTheShorterTextEnds) {
  EXPECT_EQ(stringByReplacingUnescapedOccurrencesOfString("abcabc", "abc", ""), Text("abc"));
  EXPECT_EQ(stringByReplacingUnescapedOccurrencesOfString("xx-xx", "xx", "y"), Text("y-xx"));
  EXPECT_EQ(stringByReplacingUnescapedOccurrencesOfString("aaaa", "aa", ""), Text("aa"));
  EXPECT_EQ(stringByReplacingUnescapedOccurrencesOfString("aa", "a", "bbbb"), Text("bbbbbbba"));
}

TEST(StringByExpandingEscapedControlCharacters, BecomeReturnLineFeedAndTab) {
  EXPECT_EQ(stringByExpandingEscapedControlCharacters("a\\rb"), Text("a\rb"));
  EXPECT_EQ(stringByExpandingEscapedControlCharacters("a\\nb"), Text("a\nb"));
  EXPECT_EQ(stringByExpandingEscapedControlCharacters("a\\tb"), Text("a\tb"));
  EXPECT_EQ(stringByExpandingEscapedControlCharacters("\\t\\n\\r"), Text("\t\n\r"));
}

TEST(StringByExpandingEscapedControlCharacters, AnEscapedBackslashFollowedByNStaysAsItIs) {
  const Text text = "\\\\n";
  EXPECT_TRUE(stringByExpandingEscapedControlCharacters(text).isSameObject(text));
}

TEST(StringByExpandingEscapedControlCharacters, TheSecondOfOneKindIsMissedBecauseTheResultHasMoved) {
  EXPECT_EQ(stringByExpandingEscapedControlCharacters("a\\nb\\nc"), Text("a\nb\\nc"));
}

TEST(StringWithObjCString, TurnsALiteralBackIntoItsText) {
  EXPECT_EQ(stringWithObjCString("@\"a\\tb\""), Text("a\tb"));
  EXPECT_EQ(stringWithObjCString("@\"say \\\"hi\\\"\\r\\n\""), Text("say \"hi\"\r\n"));
  EXPECT_EQ(stringWithObjCString("@\"\\\\\""), Text("\\"));
}

TEST(StringWithObjCString, AtMostTwoUnitsGiveTheEmptyText) {
  for (const char* const literal : {"", "@", "@\"", "\"\""})
    EXPECT_EQ(stringWithObjCString(literal), Text(""));
  EXPECT_EQ(stringWithObjCString("@\"\""), Text(""));
}

TEST(StringWithObjCString, BackslashPairsAreUndoneFirstSoAnEscapedBackslashBeforeNEndsAsALineFeed) {
  EXPECT_EQ(stringWithObjCString("@\"\\\\n\""), Text("\n"));
}

TEST(ObjCStringWithString, IsDeliberatelyTheIdentity) {
  const Text text = "say \"hi\"\n";
  EXPECT_TRUE(objCStringWithString(text).isSameObject(text));
}

}  // namespace
}  // namespace halvorn
