#include "Core/Text.h"

#include <gtest/gtest.h>

#include <limits>
#include <random>

namespace halvorn {
namespace {

std::string randomBytes(std::mt19937& random) {
  std::string bytes(random() % 24, '\0');
  for (char& byte : bytes) byte = static_cast<char>(random() % 3 == 0 ? random() : 0x60 + random() % 0x80);
  return bytes;
}

TEST(Text, ACopyIsTheSameObjectAndAnEqualTextIsNot) {
  const Text a("Foo");
  const Text copy = a;
  const Text equal("Foo");
  EXPECT_TRUE(copy.isSameObject(a));
  EXPECT_EQ(equal, a);
  EXPECT_FALSE(equal.isSameObject(a));
}

TEST(Text, AllEmptyTextsAreOneObject) {
  EXPECT_TRUE(Text().isSameObject(Text("")));
  EXPECT_TRUE(Text("ab").substring(2).isSameObject(Text()));
}

TEST(Text, AWholeSubstringIsTheSameObject) {
  const Text text("Foo");
  EXPECT_TRUE(text.substring(0).isSameObject(text));
  EXPECT_TRUE(text.substring(0, 99).isSameObject(text));
  EXPECT_TRUE(text.trimmed().isSameObject(text));
  EXPECT_TRUE(text.replacing("x", "y").isSameObject(text));
}

TEST(Text, AnyBytesComeBackUnchanged) {
  std::mt19937 random(20240607);
  for (int round = 0; round < 200'000; ++round) {
    const std::string bytes = randomBytes(random);
    ASSERT_EQ(Text(bytes).bytes(), bytes) << "round " << round;
  }
}

TEST(Text, BytesThatAreNotUtf8BecomeLoneLowSurrogates) {
  const Text text(std::string_view("a\xE4z"));
  ASSERT_EQ(text.length(), 3u);
  EXPECT_EQ(text.at(1), 0xDCE4);
}

TEST(Text, StrictReadingRefusesWhatIsNotUtf8) {
  const struct {
    std::string_view bytes;
    bool isValid;
    const char* why;
  } cases[] = {
      {"Gr\xC3\xBC\xC3\x9F", true, "two-byte sequences"},
      {"\xF0\x9F\x98\x80", true, "beyond the basic plane"},
      {"\xC0\xAF", false, "overlong slash"},
      {"\xE0\x80\xAF", false, "overlong in three"},
      {"\xED\xA0\x80", false, "a surrogate"},
      {"\xF4\x90\x80\x80", false, "above U+10FFFF"},
      {"\xC3", false, "cut off"},
      {"\x80", false, "a tail without a head"},
  };
  for (const auto& [bytes, isValid, why] : cases)
    EXPECT_EQ(Text::fromStrictUtf8(bytes).has_value(), isValid) << why;
}

TEST(Text, CharactersBeyondTheBasicPlaneAreTwoUnits) {
  const Text text = Text::fromScalar(0x1F600);
  ASSERT_EQ(text.length(), 2u);
  EXPECT_EQ(text.at(0), 0xD83D);
  EXPECT_EQ(text.bytes(), "\xF0\x9F\x98\x80");
}

TEST(Text, MacRomanReadsEveryByteAsOneCharacter) {
  EXPECT_EQ(Text::fromMacRoman("A\x8A\xDB"), Text("A\xC3\xA4\xE2\x82\xAC"));
}

TEST(Text, TheUpperHalfOfMacRomanIsThatOfItsTable) {
  std::string bytes;
  for (int byte = 0x80; byte <= 0xFF; ++byte) bytes.push_back(static_cast<char>(byte));
  EXPECT_EQ(Text::fromMacRoman(bytes), Text(std::u16string(u"ÄÅÇÉÑÖÜáàâäãåçéèêëíìîïñóòôöõúùûü"
                                                           u"†°¢£§•¶ß®©™´¨≠ÆØ∞±≤≥¥µ∂∑∏π∫ªºΩæø"
                                                           u"¿¡¬√ƒ≈∆«»…\u00A0ÀÃÕŒœ–—“”‘’÷◊ÿŸ⁄€‹›ﬁﬂ"
                                                           u"‡·‚„‰ÂÊÁËÈÍÎÏÌÓÔ\uF8FFÒÚÛÙıˆ˜¯˘˙˚¸˝˛ˇ")));
}

TEST(Text, FindsPrefixesSuffixesAndParts) {
  const Text text("/opt/Foo.app");
  EXPECT_TRUE(text.hasPrefix("/opt"));
  EXPECT_TRUE(text.hasSuffix(".app"));
  EXPECT_FALSE(text.hasSuffix(".App"));
  EXPECT_EQ(text.find("Foo"), 5u);
  EXPECT_EQ(text.find("Foo", 6), Text::npos);
}

TEST(Text, AnEmptyPrefixOrSuffixMatchesNothing) {
  for (const Text& text : {Text("Foo"), Text()}) {
    EXPECT_FALSE(text.hasPrefix(""));
    EXPECT_FALSE(text.hasSuffix(""));
  }
}

TEST(Text, SplitsAtEverySeparator) {
  EXPECT_EQ(Text("a..b").split(u'.'), (std::vector<Text>{"a", "", "b"}));
  EXPECT_EQ(Text("").split(u'.'), std::vector<Text>{""});
  EXPECT_EQ(join({"a", "b"}, ", "), Text("a, b"));
}

TEST(Text, ReadsWholeNumbersAtTheStart) {
  const struct {
    const char* text;
    std::int32_t value;
  } cases[] = {{"12", 12}, {" \t-7x", -7}, {"+3", 3},  {"", 0}, {"x1", 0},
               {"+-3", 0}, {"2.9", 2},     {"007", 7}, {"-", 0}};
  for (const auto& [text, value] : cases) EXPECT_EQ(Text(text).intValue(), value) << text;
  EXPECT_EQ(Text("99999999999").intValue(), std::numeric_limits<std::int32_t>::max());
  EXPECT_EQ(Text("-99999999999").intValue(), std::numeric_limits<std::int32_t>::min());
}

TEST(Text, ReadsRealsAtTheStartAndNoWords) {
  const struct {
    const char* text;
    float value;
  } cases[] = {{"2.5", 2.5f}, {"2.5 s", 2.5f}, {"-1", -1.0f}, {"+.5", 0.5f}, {"1e3", 1000.0f},
               {"soon", 0},   {"", 0},         {"inf", 0},    {"nan", 0},    {"1e-400", 0}};
  for (const auto& [text, value] : cases) EXPECT_EQ(Text(text).floatValue(), value) << text;
}

TEST(Text, AHighSurrogateTakesOnlyALowOneWithIt) {
  EXPECT_EQ(Text(std::u16string{0xD83D, 0xDE00}).bytes(), "\xF0\x9F\x98\x80");
  EXPECT_EQ(Text(std::u16string{0xD83D, 0xDFFF}).bytes(), "\xF0\x9F\x9F\xBF");
  EXPECT_EQ(Text(std::u16string{0xD83D, 0xE000}).bytes(), "\xED\xA0\xBD\xEE\x80\x80");
  EXPECT_EQ(Text(std::u16string{0xD83D, u'x'}).bytes(), "\xED\xA0\xBDx");
}

TEST(Text, TrimsBlanksOfAllKindsAtBothEnds) {
  EXPECT_EQ(Text("\xC2\xA0\t Foo Bar\r\n").trimmed(), Text("Foo Bar"));
  EXPECT_TRUE(Text(" \n\xE3\x80\x80").trimmed().isEmpty());
  const std::u16string blanks =
      u"\t\n\v\f\r "
      u"\u0085\u00A0\u1680\u2000\u2001\u2002\u2003\u2004\u2005\u2006\u2007\u2008\u2009\u200A\u200B\u2028"
      u"\u2029\u202F\u205F\u3000";
  for (unsigned unit = 0; unit <= 0xFFFF; ++unit) {
    const Text text(std::u16string(1, static_cast<char16_t>(unit)));
    EXPECT_EQ(text.trimmed().isEmpty(), blanks.find(static_cast<char16_t>(unit)) != std::u16string::npos)
        << unit;
  }
}

}  // namespace
}  // namespace halvorn
