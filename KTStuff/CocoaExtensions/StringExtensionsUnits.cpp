#include "KTStuff/CocoaExtensions/StringExtensionsUnits.h"

#include <algorithm>

namespace halvorn::StringExtensions {
namespace {

// How much comparing may go to waste before the search changes its method: this,
// and this much per unit passed.
constexpr std::size_t kFreeComparisons = 256;
constexpr std::size_t kComparisonsPerUnit = 4;

constexpr std::size_t kBlock = 16;

// The first position from `start` on where the pattern could begin: its first and its last unit are in their
// places. npos when there is none that leaves room for the pattern.
std::size_t findCandidate(std::u16string_view units, std::size_t start, std::u16string_view pattern) {
  const std::size_t end = units.size() - pattern.size() + 1;
  const char16_t first = pattern.front();
  const char16_t last = pattern.back();
  const char16_t* const firsts = units.data();
  const char16_t* const lasts = units.data() + pattern.size() - 1;
  const auto isCandidate = [&](std::size_t i) { return firsts[i] == first && lasts[i] == last; };
  std::size_t i = start;
  for (; i + kBlock <= end; i += kBlock) {
    std::uint16_t hits = 0;
    for (std::size_t j = i; j < i + kBlock; ++j) {
      const auto differences = static_cast<std::uint16_t>((firsts[j] ^ first) | (lasts[j] ^ last));
      hits = static_cast<std::uint16_t>(hits | (differences == 0 ? 1 : 0));
    }
    if (hits != 0) break;
  }
  while (i < end && !isCandidate(i)) ++i;
  return i < end ? i : Text::npos;
}

}  // namespace

std::size_t commonPrefixLength(std::u16string_view a, std::u16string_view b) {
  const std::size_t end = std::min(a.size(), b.size());
  std::size_t i = 0;
  for (; i + kBlock <= end; i += kBlock) {
    std::uint16_t differences = 0;
    for (std::size_t j = i; j < i + kBlock; ++j)
      differences = static_cast<std::uint16_t>(differences | (a[j] ^ b[j]));
    if (differences != 0) break;
  }
  while (i < end && a[i] == b[i]) ++i;
  return i;
}

std::size_t UnitSearch::find(std::u16string_view units, std::size_t start, std::size_t end) {
  end = std::min(end, units.size());
  const std::size_t length = pattern_.size();
  if (length == 0 || start > end || end - start < length) return Text::npos;
  if (firstStart_ == Text::npos) firstStart_ = start;
  std::size_t at = start;
  while (borders_.empty()) {
    at = findCandidate(units.substr(0, end), at, pattern_);
    if (at == Text::npos) return Text::npos;
    const std::size_t matched = commonPrefixLength(units.substr(at, length), pattern_);
    compared_ += matched;
    if (compared_ > kFreeComparisons + kComparisonsPerUnit * (at - firstStart_)) prepareBorders();
    if (matched == length) return at;
    ++at;
  }
  return findWithBorders(units.substr(0, end), at);
}

// The method of Knuth, Morris and Pratt: no unit of the text is read twice.
std::size_t UnitSearch::findWithBorders(std::u16string_view units, std::size_t start) {
  std::size_t matched = matched_;
  std::size_t i = read_;
  // The state of the last search is of use as far as its candidate begins at `start` or later.
  while (matched > 0 && i - matched < start) matched = borders_[matched];
  if (matched == 0) i = std::max(i, start);
  for (; i < units.size(); ++i) {
    while (matched > 0 && units[i] != pattern_[matched]) matched = borders_[matched];
    if (units[i] == pattern_[matched]) ++matched;
    if (matched < pattern_.size()) continue;
    matched_ = borders_[matched];
    read_ = i + 1;
    return i + 1 - matched;
  }
  return Text::npos;
}

void UnitSearch::prepareBorders() {
  borders_.assign(pattern_.size() + 1, 0);
  std::uint32_t border = 0;
  for (std::size_t length = 2; length <= pattern_.size(); ++length) {
    while (border > 0 && pattern_[length - 1] != pattern_[border]) border = borders_[border];
    if (pattern_[length - 1] == pattern_[border]) ++border;
    borders_[length] = border;
  }
}

}  // namespace halvorn::StringExtensions
