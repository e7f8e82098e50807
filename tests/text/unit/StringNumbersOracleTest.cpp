// Oracles of numbers: see StringOracles.h.
#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "tests/text/unit/StringOracles.h"

namespace halvorn {
namespace {

TEST(StringOracle, NumericValue) {
  forRandomTexts([](RandomTexts& random) {
    const Units digits = unitsOf(random.text(u"0123456789abcfF"));
    const Units starts[] = {u"", u" ", u"-", u"+", u"\t\n -", u"0x", u"-0X", u"0", u"- ", u"\u00A0"};
    const Text text(starts[random.below(std::size(starts))] + digits + unitsOf(random.text()));
    // The base is worked out here: base 0 means different things to different C standards.
    const std::string bytes = text.bytes();
    const std::size_t first = std::min(bytes.find_first_not_of(" \t\n\v\f\r"), bytes.size());
    const std::size_t number = first + (bytes.find_first_of("+-", first) == first ? 1 : 0);
    int base = 10;
    if (bytes.substr(number, 1) == "0") base = 8;
    if (bytes.substr(number, 2) == "0x" || bytes.substr(number, 2) == "0X") base = 16;
    EXPECT_EQ(numericValue(text), std::strtoll(bytes.c_str(), nullptr, base)) << testing::PrintToString(text);
  });
}

TEST(StringOracle, BooleanValueAndIsIntegerNumber) {
  forRandomTexts([](RandomTexts& random) {
    const Text text = random.text(random.below(2) == 0 ? u"0012 -+tTyYnx" : RandomTexts::kEdgeUnits);
    const std::string bytes = text.bytes();
    const bool isTrueWord = !bytes.empty() && std::string("TtYy1").find(bytes[0]) != std::string::npos;
    EXPECT_EQ(booleanValue(text), isTrueWord || std::strtoll(bytes.c_str(), nullptr, 10) != 0)
        << testing::PrintToString(text);
    bool isInteger = !text.isEmpty();
    for (const char16_t unit : text.units()) isInteger = isInteger && isIn(unit, u"0123456789");
    EXPECT_EQ(isIntegerNumber(text), isInteger);
  });
}

TEST(StringOracle, SmartFloatValue) {
  forRandomTexts([](RandomTexts& random) {
    const Text text = random.text(u"0123456789,.,. -");
    Units units = unitsOf(text);
    const std::size_t comma = units.find(u',');
    const std::size_t point = units.find(u'.');
    if (comma != Units::npos && point == Units::npos) {
      replaceAll(units, u",", u".");
    } else if (comma != Units::npos && comma >= point) {
      replaceAll(units, u".", u"");
      replaceAll(units, u",", u".");
    } else if (comma != Units::npos) {
      replaceAll(units, u",", u"");
    }
    const float expected = std::strtof(Text(units).bytes().c_str(), nullptr);
    if (std::isinf(expected)) return;
    EXPECT_FLOAT_EQ(smartFloatValue(text), expected) << testing::PrintToString(text);
  });
}

}  // namespace
}  // namespace halvorn
