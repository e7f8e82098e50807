// What the topics of StringExtensions share: surrogates, and searches that stay quick on any text.
// Why: docs/decisions/024-text-algorithms.md
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "Core/Text.h"

namespace halvorn::StringExtensions {

constexpr bool isHighSurrogate(char16_t unit) { return (unit & 0xFC00) == 0xD800; }  // U+D800..DBFF
constexpr bool isLowSurrogate(char16_t unit) { return (unit & 0xFC00) == 0xDC00; }   // U+DC00..DFFF
constexpr bool isSurrogate(char16_t unit) { return (unit & 0xF800) == 0xD800; }      // either

// The character that a high and a low surrogate stand for together.
constexpr char32_t scalarOfPair(char16_t high, char16_t low) {
  return static_cast<char32_t>(high) * 1024 + low - 0x35FDC00;
}

// Whether any character beyond U+FFFF may be among them.
constexpr bool hasHighSurrogate(std::u16string_view units) {
  std::uint16_t hits = 0;
  for (const char16_t unit : units) hits = static_cast<std::uint16_t>(hits | (isHighSurrogate(unit) ? 1 : 0));
  return hits != 0;
}

// The pair of a code from 0x10000 on. There is no upper check: beyond 0x10FFFF the two units mean nothing.
constexpr char16_t highSurrogateOf(char32_t code) { return static_cast<char16_t>((code >> 10) + 0xD7C0); }
constexpr char16_t lowSurrogateOf(char32_t code) { return static_cast<char16_t>((code & 0x3FF) + 0xDC00); }

// Appends one unit, or the pair.
inline void appendCode(std::u16string& units, char32_t code) {
  if (code >= 0x10000) units.push_back(highSurrogateOf(code));
  units.push_back(code < 0x10000 ? static_cast<char16_t>(code) : lowSurrogateOf(code));
}

// Of eight truth values in memory: the place of the first that is true, and the word without it.
constexpr std::size_t firstByteOf(std::uint64_t word) {
  const int zeros =
      std::endian::native == std::endian::little ? std::countr_zero(word) : std::countl_zero(word);
  return static_cast<std::size_t>(zeros) / 8;
}
constexpr std::uint64_t withoutFirstByte(std::uint64_t word) {
  if (std::endian::native == std::endian::little) return word & (word - 1);
  return word & ~(std::uint64_t{1} << (63 - std::countl_zero(word)));
}

// The first position from `start` on whose unit passes the test, else npos. The test is asked
// about whole blocks at a time, so it should be a plain comparison that compilers can turn
// into one instruction for eight units.
template <typename UnitTest>
std::size_t findUnit(std::u16string_view units, std::size_t start, UnitTest passes) {
  constexpr std::size_t kBlock = 16;
  std::size_t i = start;
  for (; i + kBlock <= units.size(); i += kBlock) {
    const char16_t* const block = units.data() + i;
    std::uint16_t hits = 0;
    for (std::size_t j = 0; j < kBlock; ++j)
      hits = static_cast<std::uint16_t>(hits | (passes(block[j]) ? 1 : 0));
    if (hits != 0) break;
  }
  for (; i < units.size(); ++i) {
    if (passes(units[i])) return i;
  }
  return Text::npos;
}

// How many units pass the test.
template <typename UnitTest>
std::size_t countUnits(std::u16string_view units, UnitTest passes) {
  constexpr std::size_t kBlock = 0x8000;  // as many as sixteen bits count
  std::size_t total = 0;
  for (std::size_t start = 0; start < units.size(); start += kBlock) {
    std::uint16_t count = 0;
    for (const char16_t unit : units.substr(start, kBlock))
      count = static_cast<std::uint16_t>(count + (passes(unit) ? 1 : 0));
    total += count;
  }
  return total;
}

// Calls the block with each position whose unit passes the test, in order: findUnit for texts in which many
// do. The test is asked about whole blocks at a time here too.
template <typename UnitTest, typename Block>
void forEachUnit(std::u16string_view units, UnitTest passes, Block&& block) {
  constexpr std::size_t kBlock = 64;
  std::size_t i = 0;
  for (; i + kBlock <= units.size(); i += kBlock) {
    std::array<bool, kBlock> hits{};
    for (std::size_t j = 0; j < kBlock; ++j) hits[j] = passes(units[i + j]);
    // Most words are zero and passed over as one.
    for (std::size_t j = 0; j < kBlock; j += sizeof(std::uint64_t)) {
      std::uint64_t word = 0;
      std::memcpy(&word, &hits[j], sizeof word);
      for (; word != 0; word = withoutFirstByte(word)) block(i + j + firstByteOf(word));
    }
  }
  for (; i < units.size(); ++i) {
    if (passes(units[i])) block(i);
  }
}

// How many units both begin with.
[[nodiscard]] std::size_t commonPrefixLength(std::u16string_view a, std::u16string_view b);

// Finds a text in another, unit for unit. Quick on ordinary texts, and never worse than linear in what it
// reads, also where both texts repeat themselves ("aaaa...ab" in "aaaa..."). One search goes through one
// text, with starts that never go back. The pattern's units must outlive it.
class UnitSearch {
 public:
  explicit UnitSearch(std::u16string_view pattern) : pattern_(pattern) {}  // an empty one is found nowhere

  // The leftmost occurrence that begins at `start` or later and ends at `end` at the latest; npos for none.
  // An empty pattern is found nowhere.
  [[nodiscard]] std::size_t find(std::u16string_view units, std::size_t start, std::size_t end);

 private:
  [[nodiscard]] std::size_t findWithBorders(std::u16string_view units, std::size_t start);
  void prepareBorders();

  std::u16string_view pattern_;
  std::size_t firstStart_ = Text::npos;
  std::size_t compared_ = 0;  // units compared so far; too many of them in vain, and borders are made
  // For each length of a prefix of the pattern the longest shorter prefix that
  // it ends with; empty until made.
  std::vector<std::uint32_t> borders_;
  std::size_t read_ = 0;     // with borders: how far the text was read,
  std::size_t matched_ = 0;  // and how much of the pattern the units before that are
};

}  // namespace halvorn::StringExtensions
