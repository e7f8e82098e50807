#include "Core/RealPrinting.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace halvorn {
namespace {

// The digits before the point of the largest number, the point, and a sign or an exponent.
constexpr std::size_t kMostBesideFraction = 320;

struct Modifiers {
  std::string_view flags;
  std::size_t width = 0;
  int precision = 6;

  [[nodiscard]] bool has(char flag) const { return flags.find(flag) != std::string_view::npos; }
};

template <typename Number>
std::string_view readNumber(std::string_view text, Number& number) {
  const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
  return text.substr(static_cast<std::size_t>(result.ptr - text.data()));
}

Modifiers modifiersIn(std::string_view text) {
  Modifiers result;
  const std::size_t end = std::min(text.find_first_not_of("-+ #0"), text.size());
  result.flags = text.substr(0, end);
  const std::string_view rest = readNumber(text.substr(end), result.width);
  if (rest.empty()) return result;
  result.precision = 0;  // "." alone
  readNumber(rest.substr(1), result.precision);
  return result;
}

std::string digitsOf(double magnitude, std::chars_format form, int precision) {
  std::string digits(kMostBesideFraction + static_cast<std::size_t>(precision), '\0');
  const auto result = std::to_chars(digits.data(), digits.data() + digits.size(), magnitude, form, precision);
  digits.resize(static_cast<std::size_t>(result.ptr - digits.data()));
  return digits;
}

}  // namespace

std::string printedInFull(double value, std::string_view modifiers) {
  const Modifiers wanted = modifiersIn(modifiers);
  std::string digits = digitsOf(std::abs(value), std::chars_format::fixed, wanted.precision);
  if (wanted.has('#') && wanted.precision == 0 && std::isfinite(value)) digits += '.';
  std::string sign;
  if (std::signbit(value)) {
    sign = "-";
  } else if (wanted.has('+')) {
    sign = "+";
  } else if (wanted.has(' ')) {
    sign = " ";
  }
  const std::size_t length = sign.size() + digits.size();
  const std::size_t missing = wanted.width > length ? wanted.width - length : 0;
  if (wanted.has('-')) return sign + digits + std::string(missing, ' ');
  if (wanted.has('0') && std::isfinite(value)) return sign + std::string(missing, '0') + digits;
  return std::string(missing, ' ') + sign + digits;
}

std::string printedBriefly(double value, int significantDigits) {
  const std::string digits = digitsOf(std::abs(value), std::chars_format::general, significantDigits);
  return std::signbit(value) ? "-" + digits : digits;
}

}  // namespace halvorn
