// Oracles of white space, lines and searches: see StringOracles.h.
#include <algorithm>

#include "tests/fakes/FakeUnicode.h"
#include "tests/text/unit/StringOracles.h"

namespace halvorn {
namespace {

TEST(StringOracle, StringByTrimmingWhitespace) {
  forRandomTexts([](RandomTexts& random) {
    const Text text = random.text(random.below(2) == 0 ? u" \t\n\u00A0\u0001!" : RandomTexts::kEdgeUnits);
    Units expected = unitsOf(text);
    const auto isBlank = [](char16_t unit) { return unit < 33 || unit == 160; };
    while (!expected.empty() && isBlank(expected.front())) expected.erase(0, 1);
    while (!expected.empty() && isBlank(expected.back())) expected.pop_back();
    expectResult(text, stringByTrimmingWhitespace(text), expected, expected.size() != text.length());
    const MutableText receiver(text);
    const MutableText result = stringByTrimmingWhitespace(receiver);
    EXPECT_EQ(result.text(), Text(expected));
    EXPECT_EQ(result.isSameObject(receiver), expected.size() == text.length());
  });
}

TEST(StringOracle, TrimWhitespaceAndAsSingleLine) {
  const FakeUnicode unicode;
  forRandomTexts([&](RandomTexts& random) {
    const Text text = random.text();
    const Units kWhite = u"\t\n\v\f\r \u0085\u00A0";
    const auto trimmed = [&](Units units) {
      while (!units.empty() && isIn(units.front(), kWhite)) units.erase(0, 1);
      while (!units.empty() && isIn(units.back(), kWhite)) units.pop_back();
      return Text(units);
    };
    EXPECT_EQ(trimWhitespace(text, unicode).text(), trimmed(unitsOf(text)));
    Units line = unitsOf(text);
    for (char16_t& unit : line) {
      if (unit < 0x20 || (unit >= 0x7F && unit < 0xA0) || unit == 0xAD) unit = u' ';
    }
    EXPECT_EQ(asSingleLine(text, unicode), trimmed(line));
  });
}

TEST(StringOracle, ArrayOfLines) {
  forRandomTexts([](RandomTexts& random) {
    const Text text = random.text(u"ab\r\n");
    const Units units = unitsOf(text);
    Units separator = u"\r";
    if (units.find(u'\n') != Units::npos) separator = u"\n";
    if (units.find(u"\r\n") != Units::npos) separator = u"\r\n";
    std::vector<Text> expected;
    Units line;
    for (std::size_t i = 0; i < units.size();) {
      if (units.compare(i, separator.size(), separator) == 0) {
        expected.push_back(Text(line));
        line.clear();
        i += separator.size();
      } else {
        line.push_back(units[i++]);
      }
    }
    expected.push_back(Text(line));
    EXPECT_EQ(arrayOfLines(text), expected) << testing::PrintToString(text);
  });
}

TEST(StringOracle, WithLineSeparator) {
  const Units separators[] = {u"\n", u"\r", u"\r\n", u"\n\r", u"\n\n", u"", u"|", u"<br>", u"x\n", u"\ry"};
  forRandomTexts([&](RandomTexts& random) {
    const Text text = random.text(random.below(2) == 0 ? u"ab\r\n|" : RandomTexts::kEdgeUnits);
    const Units separator = separators[random.below(std::size(separators))];
    Units expected = unitsOf(text);
    int count = 0;
    for (const Units target : {u"\r\n", u"\r", u"\n"}) {
      if (separator != target) count += replaceAll(expected, target, separator);
    }
    expectResult(text, withLineSeparator(text, Text(separator)), expected, count > 0);
  });
}

TEST(StringOracle, ComponentsSeparatedByCharacter) {
  forRandomTexts([](RandomTexts& random) {
    const Text text = random.text(random.below(2) == 0 ? u"ab," : RandomTexts::kEdgeUnits);
    const char16_t separator = random.below(4) == 0 ? u'\xD83D' : u',';
    std::vector<Text> expected;
    Units part;
    for (const char16_t unit : text.units()) {
      if (unit == separator) {
        expected.push_back(Text(part));
        part.clear();
      } else {
        part.push_back(unit);
      }
    }
    if (!part.empty()) expected.push_back(Text(part));
    EXPECT_EQ(componentsSeparatedByCharacter(text, separator), expected) << testing::PrintToString(text);
  });
}

TEST(StringOracle, Repeated) {
  forRandomTexts([](RandomTexts& random) {
    const Text text = random.text();
    const auto count = static_cast<std::int32_t>(random.below(12)) - 2;
    Units expected;
    for (std::int32_t i = 0; i < count; ++i) expected += text.units();
    const Text result = repeated(text, count);
    EXPECT_EQ(result, Text(expected));
    EXPECT_TRUE(count != 1 || result.isSameObject(text));
  });
}

TEST(StringOracle, SearchesAlsoAfterManyComparisonsInVain) {
  forRandomTexts([](RandomTexts& random) {
    // Of one letter mostly, so that nearly everything nearly matches.
    Units text(random.below(60) * (random.below(20) == 0 ? 40 : 1), u'a');
    for (std::size_t i = random.below(4); i > 0 && !text.empty(); --i) text[random.below(text.size())] = u'b';
    Units pattern(random.below(random.below(8) == 0 ? 200 : 8), u'a');
    if (!pattern.empty() && random.below(2) == 0) pattern[random.below(pattern.size())] = u'b';
    UnitSearch search(pattern);
    const std::size_t step = random.below(2) == 0 ? 1 : std::max<std::size_t>(pattern.size(), 1);
    std::size_t expected = pattern.empty() ? Units::npos : text.find(pattern);
    for (std::size_t start = 0; expected != Units::npos;
         start = expected + step, expected = text.find(pattern, start)) {
      ASSERT_EQ(search.find(text, start, text.size()), expected);
    }
    EXPECT_EQ(UnitSearch(pattern).find(text, text.size() / 2, text.size()),
              pattern.empty() ? Units::npos : text.find(pattern, text.size() / 2));
  });
}

}  // namespace
}  // namespace halvorn
