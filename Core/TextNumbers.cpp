// Reading numbers at the start of a text, the same in every locale.
#include <charconv>
#include <limits>
#include <string>

#include "Core/Text.h"

namespace halvorn {
namespace {

std::string_view skippingBlanks(std::string_view bytes) {
  const auto first = bytes.find_first_not_of(" \t\n\v\f\r");
  return first == std::string_view::npos ? std::string_view() : bytes.substr(first);
}

// The part that from_chars reads; a leading "+" is ours to skip.
std::string_view skippingPlus(std::string_view bytes) {
  const bool isPlusBeforeDigits = bytes.size() > 1 && bytes[0] == '+' && bytes[1] != '-' && bytes[1] != '+';
  return isPlusBeforeDigits ? bytes.substr(1) : bytes;
}

// Only numbers written in digits count: "inf" and "nan" are words.
bool startsLikeNumber(std::string_view bytes) {
  if (!bytes.empty() && bytes[0] == '-') bytes.remove_prefix(1);
  if (!bytes.empty() && bytes[0] == '.') bytes.remove_prefix(1);
  return !bytes.empty() && bytes[0] >= '0' && bytes[0] <= '9';
}

template <typename Real>
Real realAtStart(const Text& text) {
  const std::string bytes = text.bytes();
  const std::string_view digits = skippingPlus(skippingBlanks(bytes));
  if (!startsLikeNumber(digits)) return 0;
  Real value = 0;
  const auto result = std::from_chars(digits.data(), digits.data() + digits.size(), value);
  if (result.ec != std::errc::result_out_of_range) return value;
  // from_chars does not tell too large from too small: a negative exponent does.
  const std::string_view read = digits.substr(0, static_cast<std::size_t>(result.ptr - digits.data()));
  if (read.find("e-") != std::string_view::npos || read.find("E-") != std::string_view::npos) return 0;
  const Real largest = std::numeric_limits<Real>::max();
  return digits[0] == '-' ? -largest : largest;
}

}  // namespace

std::int32_t Text::intValue() const {
  const std::string all = bytes();
  const std::string_view digits = skippingPlus(skippingBlanks(all));
  std::int32_t value = 0;
  const auto result = std::from_chars(digits.data(), digits.data() + digits.size(), value);
  if (result.ec == std::errc::result_out_of_range) {
    return digits[0] == '-' ? std::numeric_limits<std::int32_t>::min()
                            : std::numeric_limits<std::int32_t>::max();
  }
  return value;
}

float Text::floatValue() const { return realAtStart<float>(*this); }
double Text::doubleValue() const { return realAtStart<double>(*this); }

}  // namespace halvorn
