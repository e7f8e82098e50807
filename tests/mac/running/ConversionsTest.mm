// Values of the core as Foundation's objects, and back.
#include "Platform/running/mac/Conversions.h"

#include <gtest/gtest.h>

#include "tests/mac/MacLoop.h"
#include "tests/support/TextPrinting.h"

namespace halvorn {
namespace {

class ConversionsTest : public testing::Test {
 protected:
  MacPool pool;
};

TEST_F(ConversionsTest, AnyTextComesBackUnitForUnit) {
  for (const Text& text : {Text(), Text("plain"), Text("Grüße 日本 \U0001F600"),
                           Text(std::u16string(3, u'\0')), Text(std::u16string(100'000, u'x'))}) {
    EXPECT_EQ(textOf(stringOf(text)), text);
  }
  EXPECT_EQ(textOf(nil), std::nullopt);
}

TEST_F(ConversionsTest, ALoneSurrogateComesBackOrAMarkStandsForIt) {
  for (const Text& text :
       {Text(u"lone \xD800 and \xDCFF"), Text(u"\xDC00\xD800"), Text(u"\xD83D\xDE00\xD83D")}) {
    const auto back = textOf(stringOf(text));
    ASSERT_TRUE(back);
    ASSERT_EQ(back->length(), text.length());
    for (std::size_t i = 0; i < text.length(); ++i) {
      const bool isPaired = text.length() == 3 && i < 2;
      const bool isLone = (text.at(i) & 0xF800) == 0xD800 && !isPaired;
      EXPECT_TRUE(back->at(i) == text.at(i) || (isLone && back->at(i) == u'\uFFFD')) << i;
    }
  }
}

TEST_F(ConversionsTest, ListsKeepTheirOrder) {
  NSArray* const array = arrayOf({"b", "a", "ü"});
  ASSERT_EQ([array count], 3U);
  EXPECT_EQ(textOf([array objectAtIndex:0]), Text("b"));
  EXPECT_EQ(textOf([array objectAtIndex:2]), Text("ü"));
  EXPECT_EQ([arrayOf({}) count], 0U);
}

TEST_F(ConversionsTest, BytesComeBack) {
  const std::string bytes("a\0\xFFz", 4);
  EXPECT_EQ(bytesOf(dataOf(bytes)), bytes);
  EXPECT_EQ(bytesOf(dataOf("")), "");
}

TEST_F(ConversionsTest, NumbersKeepTheirKind) {
  EXPECT_EQ(valueOf([NSNumber numberWithBool:YES]), PropertyValue(true));
  EXPECT_EQ(valueOf([NSNumber numberWithBool:NO]), PropertyValue(false));
  EXPECT_EQ(valueOf([NSNumber numberWithInt:0]), PropertyValue(0));
  EXPECT_EQ(valueOf([NSNumber numberWithInt:1]), PropertyValue(1));
  EXPECT_EQ(valueOf([NSNumber numberWithInt:-7]), PropertyValue(-7));
  EXPECT_EQ(valueOf([NSNumber numberWithLongLong:INT64_MAX]), PropertyValue(INT64_MAX));
  EXPECT_EQ(valueOf([NSNumber numberWithDouble:0.5]), PropertyValue(0.5));
  EXPECT_EQ(valueOf([NSNumber numberWithFloat:2.0F]), PropertyValue(2.0));
}

TEST_F(ConversionsTest, AWholeTreeOfValuesIsRead) {
  NSDictionary* const dictionary = [NSDictionary
      dictionaryWithObjectsAndKeys:[NSArray arrayWithObjects:@"a", [NSNumber numberWithInt:2], nil], @"list",
                                   [NSDictionary dictionaryWithObject:@"v" forKey:@"k"], @"inner",
                                   [NSDate dateWithTimeIntervalSince1970:1.5], @"date",
                                   [NSData dataWithBytes:"x" length:1], @"data", nil];
  EXPECT_EQ(dictionaryOf(dictionary), (PropertyDictionary{{"list", PropertyArray{"a", 2}},
                                                          {"inner", PropertyDictionary{{"k", "v"}}},
                                                          {"date", Date{1.5}},
                                                          {"data", PropertyData{"x"}}}));
}

TEST_F(ConversionsTest, WhatNoPropertyListHoldsIsNone) {
  EXPECT_EQ(valueOf(nil), std::nullopt);
  EXPECT_EQ(valueOf([NSNull null]), std::nullopt);
  EXPECT_EQ(valueOf([NSArray arrayWithObject:[NSNull null]]), std::nullopt);
  EXPECT_EQ(dictionaryOf([NSDictionary dictionaryWithObject:@"v" forKey:[NSNumber numberWithInt:1]]),
            std::nullopt);
  EXPECT_EQ(dictionaryOf(nil), std::nullopt);
}

TEST_F(ConversionsTest, WhatIsTooDeepIsNone) {
  id nested = @"leaf";
  for (int i = 0; i < 90; ++i) nested = [NSArray arrayWithObject:nested];
  EXPECT_TRUE(valueOf(nested));
  for (int i = 0; i < 20; ++i) nested = [NSArray arrayWithObject:nested];
  EXPECT_FALSE(valueOf(nested));
}

TEST_F(ConversionsTest, AnExceptionOfTheSystemBecomesTheFallback) {
  EXPECT_EQ(answered(1,
                     [] {
                       [NSException raise:NSGenericException format:@"no"];
                       return 2;
                     }),
            1);
  EXPECT_EQ(answered(1, [] { return 2; }), 2);
  attempted([] { [[NSArray array] objectAtIndex:5]; });
}

}  // namespace
}  // namespace halvorn
