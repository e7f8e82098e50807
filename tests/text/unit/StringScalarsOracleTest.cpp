// Oracles of scalars: see StringOracles.h.
#include <cstdio>

#include "tests/text/unit/StringOracles.h"

namespace halvorn {
namespace {

TEST(StringOracle, NumberOfUnicodeCharacters) {
  forRandomTexts([](RandomTexts& random) {
    const Text text = random.text();
    std::uint32_t count = 0;
    for (std::size_t i = 0; i < text.length(); ++i, ++count) {
      if (isHigh(text.at(i)) && i + 1 < text.length() && isLow(text.at(i + 1))) ++i;
    }
    EXPECT_EQ(numberOfUnicodeCharacters(text), count) << testing::PrintToString(text);
  });
}

std::u32string scalarsOf(const Units& units) {
  std::u32string scalars;
  for (std::size_t i = 0; i < units.size(); ++i) {
    if (!isHigh(units[i])) {
      scalars.push_back(units[i]);
    } else if (i + 1 < units.size() && isLow(units[i + 1])) {
      scalars.push_back(0x10000 + (units[i] - 0xD800u) * 1024 + (units[i + 1] - 0xDC00u));
      ++i;
    } else {
      ++i;  // dropped, with the unit behind it
    }
  }
  return scalars;
}

TEST(StringOracle, ForUTF32CharactersAndTheSequenceStrings) {
  forRandomTexts([](RandomTexts& random) {
    const Text text =
        random.text(random.below(2) == 0 ? u"a\xD83D\xDE00\xD83D\xDE00" : RandomTexts::kEdgeUnits);
    const std::u32string expected = scalarsOf(unitsOf(text));
    std::u32string reported;
    forUTF32Characters(text, [&](char32_t scalar) { reported.push_back(scalar); });
    EXPECT_EQ(reported, expected) << testing::PrintToString(text);
    std::string sequence;
    for (const char32_t scalar : expected) {
      char number[16];
      std::snprintf(number, sizeof number, sequence.empty() ? "%04X" : ",%04X",
                    static_cast<unsigned>(scalar));
      sequence += number;
    }
    EXPECT_EQ(UTF32SequenceString(text), Text(sequence));
  });
}

TEST(StringOracle, LongCharacterAtIndexAndSkinColors) {
  forRandomTexts([](RandomTexts& random) {
    const Text text = random.text(random.below(2) == 0 ? u"a\xD83D\xDC4D\xD83C\xDFFB\xDFFC\uFE0F\u200D"
                                                       : RandomTexts::kEdgeUnits);
    const Units units = unitsOf(text);
    const std::size_t index = random.below(text.length() + 1);
    const Units rest = units.substr(index);
    const bool isPair = rest.size() > 1 && isHigh(rest[0]) && isLow(rest[1]);
    const char32_t expected = rest.empty() ? 0 : isPair ? scalarsOf(rest.substr(0, 2))[0] : rest[0];
    EXPECT_EQ(longCharacterAtIndex(text, static_cast<std::int32_t>(index)), expected);

    const auto color = static_cast<std::int32_t>(random.below(9)) - 1;
    const char16_t lows[] = {0, 0, 0xDFFB, 0xDFFB, 0xDFFC, 0xDFFD, 0xDFFE, 0xDFFF, 0};
    const char16_t wanted = lows[color + 1];
    const Units modifier = wanted == 0 ? Units(1, u'\0') : Units{0xD83C, wanted};
    std::size_t at = 1;
    const auto isModifier = [&](std::size_t i) {
      return units[i] == 0xD83C && units[i + 1] >= 0xDFFB && isLow(units[i + 1]);
    };
    while (at + 1 < units.size() && !isModifier(at)) ++at;
    const char16_t present = at + 1 < units.size() ? units[at + 1] : u'\0';
    Units result = units;
    if (present != wanted && present != 0) {
      result.replace(at, 2, modifier);
    } else if (present != wanted && !units.empty()) {
      const std::size_t head = units.size() > 1 && isHigh(units[0]) && isLow(units[1]) ? 2 : 1;
      if (units.compare(head, 2, u"\uFE0F\u200D") == 0) result.erase(head, 1);
      result.insert(head, modifier);
    }
    expectResult(text, emojiStringWithSkinColor(text, color), result, result != units);
  });
}

}  // namespace
}  // namespace halvorn
