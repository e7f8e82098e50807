// Oracles of comparison and patterns: see StringOracles.h.
#include <compare>

#include "tests/fakes/FakeUnicode.h"
#include "tests/text/unit/StringOracles.h"

namespace halvorn {
namespace {

// A text as a list of what is compared: characters, or numbers as their digits without leading zeros.
struct Item {
  char32_t character = 0;  // U'0' for a number
  Units digits = {};
  std::strong_ordering operator<=>(const Item& other) const {
    const bool areNumbers = character == U'0' && other.character == U'0';
    if (areNumbers && digits.size() != other.digits.size()) return digits.size() <=> other.digits.size();
    if (areNumbers) return digits.compare(other.digits) <=> 0;
    // A digit against something else: the first digit as it was written.
    return (character == U'0' ? first : character) <=>
           (other.character == U'0' ? other.first : other.character);
  }
  bool operator==(const Item& other) const { return std::is_eq(*this <=> other); }
  char32_t first = 0;
};

std::vector<Item> itemsOf(const Text& text) {
  std::vector<Item> items;
  const std::u16string_view units = text.units();
  for (std::size_t i = 0; i < units.size(); ++i) {
    if (units[i] >= u'0' && units[i] <= u'9') {
      Item item{.character = U'0', .first = units[i]};
      for (; i < units.size() && units[i] >= u'0' && units[i] <= u'9'; ++i) item.digits.push_back(units[i]);
      while (!item.digits.empty() && item.digits.front() == u'0') item.digits.erase(0, 1);
      items.push_back(item);
      --i;
    } else if (isHigh(units[i]) && i + 1 < units.size() && isLow(units[i + 1])) {
      items.push_back({.character = 0x10000 + ((units[i] - 0xD800u) << 10) + (units[i + 1] - 0xDC00u)});
      ++i;
    } else {
      // Lone surrogates come after the rest of the first plane, as the halves of pairs do.
      items.push_back({.character = isHigh(units[i]) || isLow(units[i]) ? 0x110000u + units[i] : units[i]});
    }
  }
  return items;
}

Ordering orderOf(const std::vector<Item>& a, const std::vector<Item>& b) {
  for (std::size_t i = 0; i < a.size() && i < b.size(); ++i) {
    if (a[i] != b[i]) return a[i] < b[i] ? Ordering::Ascending : Ordering::Descending;
  }
  return a.size() < b.size()   ? Ordering::Ascending
         : a.size() > b.size() ? Ordering::Descending
                               : Ordering::Same;
}

TEST(StringOracle, NumericCompareWithAndWithoutCase) {
  const FakeUnicode unicode;
  const Units alphabet = u"aAbBzZ0019 .-_\u00E9\u00C9e\u0301\u0300\u00DFs\uFFFD";
  forRandomTexts([&](RandomTexts& random) {
    const Text start = random.text(alphabet);
    const Text a = start + random.text(alphabet);
    const Text b = random.below(3) == 0 ? random.text(alphabet) : start + random.text(alphabet);
    EXPECT_EQ(numericCompare(a, b, unicode),
              orderOf(itemsOf(unicode.decomposed(a)), itemsOf(unicode.decomposed(b))))
        << testing::PrintToString(a) << " and " << testing::PrintToString(b);
    const auto folded = [&](const Text& text) {
      return itemsOf(unicode.decomposed(unicode.caseFolded(text)));
    };
    EXPECT_EQ(caseInsensitiveNumericCompare(a, b, unicode), orderOf(folded(a), folded(b)))
        << testing::PrintToString(a) << " and " << testing::PrintToString(b);
  });
}

// Whether the pattern from j on matches the text from i on, by trying everything.
bool matches(const Units& text, std::size_t i, const Units& pattern, std::size_t j) {
  if (j == pattern.size()) return i == text.size();
  if (pattern[j] != u'*')
    return i < text.size() && text[i] == pattern[j] && matches(text, i + 1, pattern, j + 1);
  return matches(text, i, pattern, j + 1) || (i < text.size() && matches(text, i + 1, pattern, j));
}

TEST(StringOracle, MatchesWildcardPattern) {
  int matched = 0;
  forRandomTexts([&](RandomTexts& random) {
    const Text text = random.text(u"aab\xD83D").substring(0, 16);
    const Text pattern = random.text(u"aab**\xD83D").substring(0, 8);
    const bool expected = matches(unitsOf(text), 0, unitsOf(pattern), 0);
    EXPECT_EQ(matchesWildcardPattern(text, pattern), expected)
        << testing::PrintToString(text) << " and " << testing::PrintToString(pattern);
    matched += expected ? 1 : 0;
  });
  EXPECT_GT(matched, 100);
}

}  // namespace
}  // namespace halvorn
