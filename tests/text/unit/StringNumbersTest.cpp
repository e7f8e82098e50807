// Numbers: parsing, and comparing texts with numbers in them.
#include <gtest/gtest.h>

#include <limits>
#include <utility>

#include "KTStuff/CocoaExtensions/StringExtensions.h"
#include "tests/fakes/FakeUnicode.h"
#include "tests/support/TextPrinting.h"

namespace halvorn {
namespace {

using namespace StringExtensions;

TEST(NumericValue, ReadsAnIntegerAsACProgramWritesIt) {
  const std::pair<Text, std::int64_t> rows[] = {
      {"42", 42},
      {" \t\n\v\f\r-42x", -42},
      {"+7", 7},
      {"0x1F", 31},
      {"-0XfF", -255},
      {"017", 15},
      {"019", 1},  // 9 is no octal digit
      {"0x", 0},   // the 0 before the x
      {"0xg", 0},
      {"0b11", 0},  // no binary prefix, whatever newer C standards say
      {"", 0},
      {"abc", 0},
      {"- 5", 0},
      {"+-5", 0},
      {"\u00A05", 0},  // no blank of the C locale
      {"12.9", 12},
      {"9223372036854775807", std::numeric_limits<std::int64_t>::max()},
      {"9223372036854775808", std::numeric_limits<std::int64_t>::max()},
      {"-9223372036854775808", std::numeric_limits<std::int64_t>::min()},
      {"-99999999999999999999", std::numeric_limits<std::int64_t>::min()},
      {"0xFFFFFFFFFFFFFFFFF", std::numeric_limits<std::int64_t>::max()},
  };
  for (const auto& [text, value] : rows) EXPECT_EQ(numericValue(text), value) << text.bytes();
}

TEST(BooleanValue, TheFirstCharacterOrANumberThatIsNotZeroIsTrue) {
  for (const char* const text : {"yes", "True", "1", "2", "T", "t", "Y", "y", "1x", " 5", "-3", "Yoghurt"}) {
    EXPECT_TRUE(booleanValue(text)) << text;
  }
  for (const char* const text : {"no", "false", "0", "", "0x1", " yes", "on", "00"}) {
    EXPECT_FALSE(booleanValue(text)) << text;
  }
}

TEST(IsIntegerNumber, EveryCharacterIsAnAsciiDigit) {
  for (const char* const text : {"007", "0", "123456789012345678901234567890"})
    EXPECT_TRUE(isIntegerNumber(text));
  for (const char* const text : {"-7", "", " 7", "7 ", "1,000", "1.0", "٣", "７"})
    EXPECT_FALSE(isIntegerNumber(text));
}

TEST(SmartFloatValue, TheDecimalSeparatorIsDetected) {
  const std::pair<Text, float> rows[] = {
      {"3,5", 3.5F},         // decimal comma
      {"1.234,5", 1234.5F},  // the comma comes after the point
      {"1,234.5", 1234.5F},  // the comma comes first
      {"3.5", 3.5F},
      {"1.234.567,5", 1234567.5F},
      {"1,234,567.5", 1234567.5F},
      {"1,234", 1.234F},  // a single separator is a decimal one
      {"1,2,3", 1.2F},    // "1.2.3": the leading number
      {"-0,5 kg", -0.5F},
      {"", 0.0F},
      {"abc", 0.0F},
      {",", 0.0F},
  };
  for (const auto& [text, value] : rows) EXPECT_FLOAT_EQ(smartFloatValue(text), value) << text.bytes();
}

TEST(SmartFloatValue, OnlyTheFirstCommaAndPointAreCompared) {
  EXPECT_FLOAT_EQ(smartFloatValue("1.5,2.5"), 15.25F);  // the comma after the point: every point is removed
  EXPECT_FLOAT_EQ(smartFloatValue("1,5.2,5"), 15.25F);  // the comma first: every comma is removed
}

class NumericCompare : public testing::Test {
 protected:
  // -1, 0, 1, and the same the other way round.
  int order(const Text& a, const Text& b) const {
    return checked(numericCompare(a, b, unicode_), numericCompare(b, a, unicode_));
  }
  int orderIgnoringCase(const Text& a, const Text& b) const {
    return checked(caseInsensitiveNumericCompare(a, b, unicode_),
                   caseInsensitiveNumericCompare(b, a, unicode_));
  }

 private:
  static int checked(Ordering forth, Ordering back) {
    EXPECT_EQ(static_cast<int>(forth), -static_cast<int>(back));
    return static_cast<int>(forth);
  }
  FakeUnicode unicode_;
};

TEST_F(NumericCompare, DigitRunsCompareByValue) {
  EXPECT_EQ(order("a9", "a10"), -1);
  EXPECT_EQ(order("a10b2", "a10b10"), -1);
  EXPECT_EQ(order("2", "10"), -1);
  EXPECT_EQ(order("99999999999999999999999", "100000000000000000000000"),
            -1);  // longer than any integer type
  EXPECT_EQ(order("a", "a1"), -1);
  EXPECT_EQ(order("", "a"), -1);
  EXPECT_EQ(order("", ""), 0);
  EXPECT_EQ(order("a1", "ab"), -1);
  EXPECT_EQ(order("a10", "a1x"), 1);
  EXPECT_EQ(order("1.2.10", "1.2.9"), 1);
}

TEST_F(NumericCompare, LeadingZerosDoNotCount) {
  EXPECT_EQ(order("a01", "a1"), 0);
  EXPECT_EQ(order("a000", "a0"), 0);
  EXPECT_EQ(order("a01b2", "a1b10"), -1);
  EXPECT_EQ(order("00012", "9"), 1);
}

TEST_F(NumericCompare, CaseMattersOnlyToTheFirst) {
  EXPECT_EQ(order("A1", "a1"), -1);
  EXPECT_EQ(orderIgnoringCase("A1", "a1"), 0);
  EXPECT_EQ(orderIgnoringCase("File9", "fILE10"), -1);
  EXPECT_EQ(orderIgnoringCase("STRASSE 2", "straße 2"), 0);
  EXPECT_EQ(orderIgnoringCase("ÄB10", "äb9"), 1);
  EXPECT_EQ(order("B", "a"), -1);
  EXPECT_EQ(orderIgnoringCase("B", "a"), 1);
}

TEST_F(NumericCompare, ComposedAndDecomposedCharactersAreTheSame) {
  EXPECT_EQ(order("caf\u00E9 9", "cafe\u0301 10"), -1);
  EXPECT_EQ(order("caf\u00E9 10", "cafe\u0301 10"), 0);
  EXPECT_EQ(orderIgnoringCase("CAF\u00C9", "cafe\u0301"), 0);
  EXPECT_EQ(order("e\u0301", "\u00E9x"), -1);
  EXPECT_EQ(order("10\u00E9", "9\u00E9"), 1);
}

TEST_F(NumericCompare, SupplementaryCharactersComeAfterThoseOfTheFirstPlane) {
  EXPECT_EQ(order("\uFFFD", "\U0001F600"), -1);
  EXPECT_EQ(order("a\U0001F6009", "a\U0001F60010"), -1);
}

}  // namespace
}  // namespace halvorn
