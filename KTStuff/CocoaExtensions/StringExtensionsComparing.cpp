// Comparing texts with numbers in them.
#include <algorithm>

#include "KTStuff/CocoaExtensions/StringExtensionsNumbers.h"
#include "KTStuff/CocoaExtensions/StringExtensionsUnits.h"

namespace halvorn::StringExtensions {
namespace {

enum class Case { Matters, Ignored };

constexpr bool isDigit(char16_t unit) { return unit >= u'0' && unit <= u'9'; }
constexpr bool isAscii(char16_t unit) { return unit < 0x80; }

constexpr char16_t asciiFolded(char16_t unit) {
  return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit + 0x20) : unit;
}

// So that the order of units is the order of scalars: surrogates after all the rest of the first plane.
constexpr unsigned scalarOrder(char16_t unit) { return isSurrogate(unit) ? unit + 0x10000u : unit; }

template <typename Value>
Ordering compareValues(const Value& a, const Value& b) {
  return a < b ? Ordering::Ascending : b < a ? Ordering::Descending : Ordering::Same;
}

std::u16string_view takeDigits(std::u16string_view& rest) {
  std::size_t count = 0;
  while (count < rest.size() && isDigit(rest[count])) ++count;
  const std::u16string_view digits = rest.substr(0, count);
  rest.remove_prefix(count);
  return digits;
}

Ordering compareByValue(std::u16string_view a, std::u16string_view b) {
  a.remove_prefix(std::min(a.find_first_not_of(u'0'), a.size()));
  b.remove_prefix(std::min(b.find_first_not_of(u'0'), b.size()));
  return a.size() != b.size() ? compareValues(a.size(), b.size()) : compareValues(a, b);
}

enum class Reach { AsciiOnly, Everything };

// Takes off both what compares the same; the answer is Same when that is everything or, for AsciiOnly, when a
// character outside ASCII comes next in either.
Ordering compareUnits(std::u16string_view& a, std::u16string_view& b, Case letters, Reach reach) {
  while (!a.empty() && !b.empty()) {
    if (isDigit(a[0]) && isDigit(b[0])) {
      const std::u16string_view digits = takeDigits(a);
      const Ordering order = compareByValue(digits, takeDigits(b));
      if (order != Ordering::Same) return order;
      continue;
    }
    if (reach == Reach::AsciiOnly && !(isAscii(a[0]) && isAscii(b[0]))) return Ordering::Same;
    const bool isFolded = reach == Reach::AsciiOnly && letters == Case::Ignored;
    const unsigned first = isFolded ? asciiFolded(a[0]) : scalarOrder(a[0]);
    const unsigned second = isFolded ? asciiFolded(b[0]) : scalarOrder(b[0]);
    if (first != second) return compareValues(first, second);
    a.remove_prefix(1);
    b.remove_prefix(1);
  }
  return compareValues(a.size(), b.size());
}

// Steps over what both texts begin with, back to a place where a number, or a letter with its marks, begins.
// Nothing below U+0300 is a mark.
void skipCommonStart(std::u16string_view& a, std::u16string_view& b) {
  std::size_t common = commonPrefixLength(a, b);
  if (common == a.size() && common == b.size()) {
    a = b = {};
    return;
  }
  while (common > 0 && a[common - 1] >= 0x300) --common;
  if (common > 0 && !isDigit(a[common - 1])) --common;
  while (common > 0 && isDigit(a[common - 1])) --common;
  a.remove_prefix(common);
  b.remove_prefix(common);
}

Text comparable(std::u16string_view units, Case letters, const Unicode& unicode) {
  const Text decomposed = unicode.decomposed(Text(std::u16string(units)));
  // Folding composes nothing, but it may bring letters that can be decomposed.
  return letters == Case::Matters ? decomposed : unicode.decomposed(unicode.caseFolded(decomposed));
}

Ordering compare(const Text& text, const Text& other, Case letters, const Unicode& unicode) {
  std::u16string_view a = text.units();
  std::u16string_view b = other.units();
  skipCommonStart(a, b);
  const Ordering order = compareUnits(a, b, letters, Reach::AsciiOnly);
  if (order != Ordering::Same || (a.empty() && b.empty())) return order;
  const Text first = comparable(a, letters, unicode);
  const Text second = comparable(b, letters, unicode);
  a = first.units();
  b = second.units();
  return compareUnits(a, b, letters, Reach::Everything);
}

}  // namespace

Ordering numericCompare(const Text& text, const Text& other, const Unicode& unicode) {
  return compare(text, other, Case::Matters, unicode);
}

Ordering caseInsensitiveNumericCompare(const Text& text, const Text& other, const Unicode& unicode) {
  return compare(text, other, Case::Ignored, unicode);
}

}  // namespace halvorn::StringExtensions
