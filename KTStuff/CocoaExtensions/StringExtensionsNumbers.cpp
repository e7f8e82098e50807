#include "KTStuff/CocoaExtensions/StringExtensionsNumbers.h"

#include <limits>

namespace halvorn::StringExtensions {
namespace {

constexpr bool isDigit(char16_t unit) { return unit >= u'0' && unit <= u'9'; }

constexpr bool isStandardBlank(char16_t unit) { return unit == u' ' || (unit >= u'\t' && unit <= u'\r'); }

// 0 to 15; more for what is no hexadecimal digit.
constexpr unsigned digitValue(char16_t unit) {
  if (isDigit(unit)) return unit - u'0';
  const unsigned lower = unit | 0x20u;
  return lower >= 'a' && lower <= 'f' && unit < 0x80 ? lower - 'a' + 10 : 16;
}

// Takes the prefix off and says the base.
unsigned takeBase(std::u16string_view& digits) {
  if (digits.empty() || digits[0] != u'0') return 10;
  const bool hasHexPrefix = digits.size() > 2 && (digits[1] | 0x20) == u'x' && digitValue(digits[2]) < 16;
  if (!hasHexPrefix) return 8;
  digits.remove_prefix(2);
  return 16;
}

}  // namespace

// Written out because the standard library's function differs from one C standard to the next ("0b1").
std::int64_t numericValue(const Text& text) {
  std::u16string_view rest = text.units();
  while (!rest.empty() && isStandardBlank(rest[0])) rest.remove_prefix(1);
  const bool isNegative = !rest.empty() && rest[0] == u'-';
  if (!rest.empty() && (rest[0] == u'-' || rest[0] == u'+')) rest.remove_prefix(1);
  const unsigned base = takeBase(rest);
  const std::uint64_t limit =
      static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max()) + (isNegative ? 1 : 0);
  std::uint64_t value = 0;
  for (; !rest.empty() && digitValue(rest[0]) < base; rest.remove_prefix(1)) {
    const unsigned digit = digitValue(rest[0]);
    value = value > (limit - digit) / base ? limit : value * base + digit;
  }
  return static_cast<std::int64_t>(isNegative ? 0 - value : value);
}

bool booleanValue(const Text& text) {
  constexpr std::u16string_view kTrue = u"TtYy1";
  if (!text.isEmpty() && kTrue.find(text.at(0)) != std::u16string_view::npos) return true;
  return text.intValue() != 0;
}

bool isIntegerNumber(const Text& text) {
  if (text.isEmpty()) return false;
  for (const char16_t unit : text.units()) {
    if (!isDigit(unit)) return false;
  }
  return true;
}

float smartFloatValue(const Text& text) {
  const std::size_t comma = text.find(u',');
  const std::size_t point = text.find(u'.');
  if (comma == Text::npos) return text.floatValue();
  if (point == Text::npos) return text.replacing(",", ".").floatValue();
  if (comma > point) return text.replacing(".", "").replacing(",", ".").floatValue();
  return text.replacing(",", "").floatValue();
}

}  // namespace halvorn::StringExtensions
