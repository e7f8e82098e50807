// Reading numbers at the start of a text, the same in every locale.
#include <charconv>
#include <limits>
#include <string>

#include "Core/RealReading.h"
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

float Text::floatValue() const {
  const std::string all = bytes();
  return realAtStart<float>(skippingBlanks(all)).value;
}

double Text::doubleValue() const {
  const std::string all = bytes();
  return realAtStart<double>(skippingBlanks(all)).value;
}

}  // namespace halvorn
