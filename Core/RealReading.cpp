#include "Core/RealReading.h"

#include <algorithm>
#include <cmath>
#include <compare>
#include <cstdint>
#include <limits>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace halvorn {
namespace {

bool isDigit(char character) { return character >= '0' && character <= '9'; }

// 0 or a positive whole number of any size.
class WholeNumber {
 public:
  explicit WholeNumber(std::string_view digits) {
    for (const char digit : digits) multiplyAndAdd(10, static_cast<std::uint32_t>(digit - '0'));
  }

  void multiplyByPowerOfTen(std::int64_t power) {
    for (; power >= 9; power -= 9) multiplyAndAdd(1'000'000'000, 0);
    for (; power > 0; --power) multiplyAndAdd(10, 0);
  }
  void shiftLeft(std::int64_t bits) {
    const auto inWord = static_cast<unsigned>(bits % kWordBits);
    std::uint64_t carry = 0;
    for (std::uint32_t& word : words_) {
      carry |= static_cast<std::uint64_t>(word) << inWord;
      word = static_cast<std::uint32_t>(carry);
      carry >>= kWordBits;
    }
    append(carry);
    words_.insert(words_.begin(), static_cast<std::size_t>(bits / kWordBits), 0);
  }
  // Of a number not larger than this one.
  void subtract(const WholeNumber& other) {
    std::int64_t borrow = 0;
    for (std::size_t i = 0; i < words_.size(); ++i) {
      borrow += static_cast<std::int64_t>(words_[i]) - (i < other.words_.size() ? other.words_[i] : 0);
      words_[i] = static_cast<std::uint32_t>(borrow);
      borrow >>= kWordBits;
    }
    while (!words_.empty() && words_.back() == 0) words_.pop_back();
  }
  [[nodiscard]] std::int64_t bitLength() const {
    std::int64_t length = static_cast<std::int64_t>(words_.size()) * kWordBits;
    for (std::uint32_t top = words_.back(); (top & 0x80000000) == 0; top <<= 1) --length;
    return length;
  }
  friend std::strong_ordering operator<=>(const WholeNumber& a, const WholeNumber& b) {
    if (a.words_.size() != b.words_.size()) return a.words_.size() <=> b.words_.size();
    for (std::size_t i = a.words_.size(); i-- > 0;) {
      if (a.words_[i] != b.words_[i]) return a.words_[i] <=> b.words_[i];
    }
    return std::strong_ordering::equal;
  }

 private:
  static constexpr int kWordBits = 32;

  void multiplyAndAdd(std::uint32_t factor, std::uint32_t summand) {
    std::uint64_t carry = summand;
    for (std::uint32_t& word : words_) {
      carry += static_cast<std::uint64_t>(word) * factor;
      word = static_cast<std::uint32_t>(carry);
      carry >>= kWordBits;
    }
    append(carry);
  }
  void append(std::uint64_t word) {
    if (word != 0) words_.push_back(static_cast<std::uint32_t>(word));
  }

  std::vector<std::uint32_t> words_;  // the lowest first, no zero at the end
};

// A number as it is written: its digits times ten to the exponent.
struct Decimal {
  std::string digits;  // no zero at either end; empty for 0
  std::int64_t exponent = 0;
  std::size_t length = 0;  // bytes read; 0 when no number stands there
};

// No number that lies half way between two of a type has more digits than that; one more that is not zero
// says enough about all that follow.
constexpr std::size_t kMostDigits = 800;
constexpr std::int64_t kLargestExponent = 1'000'000'000'000;

// The exponent that stands at `position`, which moves behind it; 0 when there is none.
std::int64_t exponentAt(std::string_view bytes, std::size_t& position) {
  std::size_t i = position;
  if (i >= bytes.size() || (bytes[i] != 'e' && bytes[i] != 'E')) return 0;
  ++i;
  const bool isNegative = i < bytes.size() && bytes[i] == '-';
  if (i < bytes.size() && (bytes[i] == '-' || bytes[i] == '+')) ++i;
  if (i >= bytes.size() || !isDigit(bytes[i])) return 0;
  std::int64_t exponent = 0;
  for (; i < bytes.size() && isDigit(bytes[i]); ++i) {
    exponent = std::min(exponent * 10 + (bytes[i] - '0'), kLargestExponent);
  }
  position = i;
  return isNegative ? -exponent : exponent;
}

// The sign before it has been read.
Decimal decimalAtStart(std::string_view bytes) {
  Decimal decimal;
  bool hasDigit = false;
  bool hasPoint = false;
  bool isMore = false;  // digits other than zero behind those that are kept
  std::size_t i = 0;
  for (; i < bytes.size() && (isDigit(bytes[i]) || (bytes[i] == '.' && !hasPoint)); ++i) {
    if (bytes[i] == '.') {
      hasPoint = true;
      continue;
    }
    hasDigit = true;
    if (hasPoint) --decimal.exponent;
    if (decimal.digits.empty() && bytes[i] == '0') continue;
    if (decimal.digits.size() < kMostDigits) {
      decimal.digits.push_back(bytes[i]);
    } else {
      isMore = isMore || bytes[i] != '0';
      ++decimal.exponent;
    }
  }
  if (!hasDigit) return Decimal();
  if (isMore) {
    decimal.digits.push_back('1');
    --decimal.exponent;
  }
  while (!decimal.digits.empty() && decimal.digits.back() == '0') {
    decimal.digits.pop_back();
    ++decimal.exponent;
  }
  decimal.exponent += exponentAt(bytes, i);
  decimal.length = i;
  return decimal;
}

// Powers of ten up to this one are exact in the type, and so are whole numbers up to 2 to the digits.
template <typename Real>
constexpr int kLargestExactPower = std::numeric_limits<Real>::digits > 24 ? 22 : 10;

// One operation with two exact numbers gives the nearest number. False when the number is not of that kind,
// or the machine calculates with more digits than the type has and so would round twice.
template <typename Real>
bool isReadInOneStep(const Decimal& decimal, Real& value) {
  const bool isSmall = decimal.digits.size() <= 18 && decimal.exponent >= -kLargestExactPower<Real> &&
                       decimal.exponent <= kLargestExactPower<Real>;
  constexpr bool isRoundedOnce = std::is_same_v<std::float_t, float>;
  if (!isRoundedOnce || !isSmall) return false;
  std::int64_t whole = 0;
  for (const char digit : decimal.digits) whole = whole * 10 + (digit - '0');
  if (whole > std::int64_t{1} << std::numeric_limits<Real>::digits) return false;
  Real power = 1;
  for (std::int64_t i = std::abs(decimal.exponent); i > 0; --i) power *= 10;
  value = decimal.exponent < 0 ? static_cast<Real>(whole) / power : static_cast<Real>(whole) * power;
  return true;
}

template <typename Real>
Real nearestQuotient(WholeNumber numerator, WholeNumber denominator) {
  // Both are brought to where the quotient is at least 1 and less than 2.
  std::int64_t exponent = numerator.bitLength() - denominator.bitLength();
  if (exponent < 0) numerator.shiftLeft(-exponent);
  if (exponent > 0) denominator.shiftLeft(exponent);
  if (numerator < denominator) {
    numerator.shiftLeft(1);
    --exponent;
  }
  const std::int64_t smallest = std::numeric_limits<Real>::min_exponent - 1;
  const std::int64_t bits =
      std::numeric_limits<Real>::digits - (exponent < smallest ? smallest - exponent : 0);
  if (bits < 0) return 0;
  std::uint64_t whole = 0;
  for (std::int64_t i = 0; i < bits; ++i) {
    whole <<= 1;
    if (numerator >= denominator) {
      numerator.subtract(denominator);
      whole |= 1;
    }
    numerator.shiftLeft(1);
  }
  // What is left is now a fraction of half of the last bit.
  const auto rest = numerator <=> denominator;
  if (std::is_gt(rest) || (std::is_eq(rest) && whole % 2 == 1)) ++whole;
  return std::ldexp(static_cast<Real>(whole), static_cast<int>(exponent - bits + 1));
}

template <typename Real>
Real nearest(const Decimal& decimal) {
  using Limits = std::numeric_limits<Real>;
  Real value = 0;
  if (decimal.digits.empty() || isReadInOneStep(decimal, value)) return value;
  // How many digits stand before the point.
  const std::int64_t magnitude = static_cast<std::int64_t>(decimal.digits.size()) + decimal.exponent;
  if (magnitude > Limits::max_exponent10 + 1) return Limits::infinity();
  if (magnitude < Limits::min_exponent10 - Limits::digits10 - 2) return 0;
  WholeNumber numerator(decimal.digits);
  WholeNumber denominator("1");
  (decimal.exponent < 0 ? denominator : numerator).multiplyByPowerOfTen(std::abs(decimal.exponent));
  return nearestQuotient<Real>(std::move(numerator), std::move(denominator));
}

}  // namespace

template <typename Real>
RealReading<Real> realAtStart(std::string_view bytes) {
  const bool hasSign = !bytes.empty() && (bytes[0] == '-' || bytes[0] == '+');
  const Decimal decimal = decimalAtStart(bytes.substr(hasSign ? 1 : 0));
  if (decimal.length == 0) return {};
  const Real value = nearest<Real>(decimal);
  return {bytes[0] == '-' ? -value : value, decimal.length + (hasSign ? 1 : 0)};
}

template RealReading<float> realAtStart<float>(std::string_view);
template RealReading<double> realAtStart<double>(std::string_view);

}  // namespace halvorn
