#include "Core/Format.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <iterator>
#include <random>
#include <string>

#include "Core/Log.h"
#include "tests/fakes/RecordingLog.h"

namespace halvorn {
namespace {

TEST(Format, FillsPlaceholdersInOrderAndByPosition) {
  EXPECT_EQ(format("%@ %@", "Foo", "1.2"), Text("Foo 1.2"));
  EXPECT_EQ(format("%2$@ before %1$@", "Foo", "Bar"), Text("Bar before Foo"));
  EXPECT_EQ(format("%1$@ and %1$@", "Foo"), Text("Foo and Foo"));
}

TEST(Format, PrintsNumbersAsCDoes) {
  EXPECT_EQ(format("%d", -3), Text("-3"));
  EXPECT_EQ(format("%02X%02X", 10, 255), Text("0AFF"));
  EXPECT_EQ(format("%1.3fs", 0.0123), Text("0.012s"));
  EXPECT_EQ(format("quit delay: %1.1f", 2.5f), Text("quit delay: 2.5"));
  EXPECT_EQ(format("%u", 4'000'000'000u), Text("4000000000"));
}

TEST(Format, RealsOfEverySizeArePrintedAsCPrintsThemInItsOwnLocale) {
  std::mt19937_64 random(7);
  const auto below = [&](std::uint64_t limit) { return random() % limit; };
  const double odd[] = {0.0, -0.0, HUGE_VAL, -HUGE_VAL, 0.5, 1.5, 2.5, 0.125, 1e308, 4.9e-324, 999999.5};
  for (int round = 0; round < 20'000; ++round) {
    std::string flags;
    for (std::uint64_t count = below(3); count > 0; --count) flags += "-+ #0"[below(5)];
    if (below(2) != 0) flags += std::to_string(1 + below(20));
    if (below(2) != 0) flags += "." + (below(4) == 0 ? std::string() : std::to_string(below(25)));
    const double value =
        below(8) == 0 ? odd[below(std::size(odd))]
                      : std::ldexp(static_cast<double>(random()) - 9e18, static_cast<int>(below(200)) - 100);
    char expected[600];
    std::snprintf(expected, sizeof expected, ("%" + flags + "f").c_str(), value);
    ASSERT_EQ(format(Text("%" + flags + "f"), value), Text(expected)) << flags;
    std::snprintf(expected, sizeof expected, "%g", value);
    ASSERT_EQ(format("%@", value), Text(expected));
    std::snprintf(expected, sizeof expected, "%.12g", value);
    ASSERT_EQ(PropertyValue(value).description(), Text(expected));
  }
}

TEST(Format, AnAbsentTextReadsAsNull) {
  EXPECT_EQ(format("autolaunch = %@", OptionalText()), Text("autolaunch = (null)"));
  EXPECT_EQ(format("%@", std::nullopt), Text("(null)"));
}

TEST(Format, AHostileFormatStandsAsItIsWritten) {
  const struct {
    const char* format;
    const char* result;
  } cases[] = {
      {"%n%n", "%n%n"},
      {"%s", "Foo"},
      {"%d", "%d"},
      {"%99999999d", "%99999999d"},
      {"%@ %@", "Foo %@"},
      {"%9$@", "%9$@"},
      {"%0$@", "%0$@"},
      {"100%", "100%"},
      {"100% sure", "100% sure"},
      {"%*d", "%*d"},
      {"%", "%"},
      {"%.99999f", "%.99999f"},
      {"%%", "%"},
      {"%ld", "%ld"},
  };
  for (const auto& [text, result] : cases) EXPECT_EQ(format(text, "Foo"), Text(result)) << text;
}

TEST(Format, NumbersHaveThreeDigitsOfWidthAndPrecisionAtMostAndTheirOwnKinds) {
  EXPECT_EQ(format("%999d", 1).length(), 999U);
  EXPECT_EQ(format("%1000d", 1), "%1000d");
  EXPECT_EQ(format("%.1000d", 1), "%.1000d");
  EXPECT_EQ(format("%1.1000d", 1), "%1.1000d");
  EXPECT_EQ(format("%1000.1d", 1), "%1000.1d");
  EXPECT_EQ(format("%x", std::int64_t{1} << 40), "10000000000");
  EXPECT_EQ(format("%@", 42), "42");
  EXPECT_EQ(format("%@", -1), "-1");
  for (const char* unknown : {"%c", "%o", "%p", "%q", "%e"}) EXPECT_EQ(format(unknown, 65), Text(unknown));
}

TEST(Format, AFilledInTextIsNotReadAsAFormat) { EXPECT_EQ(format("%@!", "%d%@"), Text("%d%@!")); }

TEST(Format, WithoutPlaceholdersReturnsTheTextItself) {
  const Text text("OK");
  EXPECT_TRUE(format(text, "Foo").isSameObject(text));
}

TEST(Log, OneEventIsOneLineWhateverTheValuesHold) {
  const RecordingLog log;
  log("Quitting '%@': %@", "AB\nC", Text(std::string_view("a\tb\\c\r\xE4\x01")));
  EXPECT_EQ(log.lines(), std::vector<std::string>{"Quitting 'AB\\nC': a\\tb\\\\c\\r\\xE4\\u{0001}"});
}

TEST(Log, LettersOfAllScriptsStandAsTheyAre) {
  const Text text("Gr\xC3\xBC\xC3\x9F \xF0\x9F\x98\x80 \xE6\x97\xA5\xE6\x9C\xAC");
  EXPECT_EQ(Log::escapedForLog(text), text);
}

TEST(Log, BytesThatAreNoCharactersAreWrittenAsBytesAndOtherHalvesOfPairsAsNumbers) {
  const std::pair<char16_t, const char*> kCases[] = {
      {0xDC7F, "\\u{DC7F}"}, {0xDC80, "\\x80"}, {0xDCFF, "\\xFF"}, {0xDD00, "\\u{DD00}"}};
  for (const auto& [unit, shown] : kCases)
    EXPECT_EQ(Log::escapedForLog(Text(std::u16string(1, unit))), Text(shown));
}

TEST(Log, MarksThatHideOrTurnTextAreWrittenOut) {
  EXPECT_EQ(Log::escapedForLog(Text(std::u16string(u"a\u202Eb\u2028c"))), Text("a\\u{202E}b\\u{2028}c"));
  EXPECT_EQ(Log::escapedForLog(Text(std::u16string(1, char16_t(0xD800)))), Text("\\u{D800}"));
  EXPECT_EQ(Log::escapedForLog("a\u00ADb\u3164c\U000E0041d"), Text("a\\u{00AD}b\\u{3164}c\\u{E0041}d"));
}

}  // namespace
}  // namespace halvorn
