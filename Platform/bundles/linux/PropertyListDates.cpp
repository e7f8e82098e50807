#include "Platform/bundles/linux/PropertyListDates.h"

#include <chrono>
#include <cstdint>

namespace halvorn {
namespace {

bool isDigit(char character) { return character >= '0' && character <= '9'; }

// Takes exactly that many digits from the front.
std::optional<int> takeNumber(std::string_view& text, std::size_t digits) {
  if (text.size() < digits) return std::nullopt;
  int number = 0;
  for (std::size_t i = 0; i < digits; ++i) {
    if (!isDigit(text[i])) return std::nullopt;
    number = number * 10 + (text[i] - '0');
  }
  text.remove_prefix(digits);
  return number;
}

bool take(std::string_view& text, char character) {
  if (text.empty() || text.front() != character) return false;
  text.remove_prefix(1);
  return true;
}

// YYYY-MM-DD, the separator, HH:MM:SS, as if in UTC.
std::optional<double> takeDateAndTime(std::string_view& text, char separator) {
  int parts[6] = {};
  const std::size_t digits[6] = {4, 2, 2, 2, 2, 2};
  const char separators[6] = {'-', '-', separator, ':', ':', '\0'};
  for (int i = 0; i < 6; ++i) {
    const auto number = takeNumber(text, digits[i]);
    if (!number || (separators[i] != '\0' && !take(text, separators[i]))) return std::nullopt;
    parts[i] = *number;
  }
  using namespace std::chrono;
  const year_month_day date{year{parts[0]}, month{static_cast<unsigned>(parts[1])},
                            day{static_cast<unsigned>(parts[2])}};
  if (!date.ok() || parts[3] > 23 || parts[4] > 59 || parts[5] > 60) return std::nullopt;
  const auto days = sys_days(date).time_since_epoch().count();
  return static_cast<double>(days) * 86'400.0 + parts[3] * 3'600.0 + parts[4] * 60.0 + parts[5];
}

int base64Digit(char character) {
  if (character >= 'A' && character <= 'Z') return character - 'A';
  if (character >= 'a' && character <= 'z') return character - 'a' + 26;
  if (isDigit(character)) return character - '0' + 52;
  if (character == '+') return 62;
  return character == '/' ? 63 : -1;
}

bool isBlank(char character) {
  return character == ' ' || character == '\t' || character == '\n' || character == '\r';
}

}  // namespace

std::optional<Date> dateFromIso8601(std::string_view text) {
  const auto seconds = takeDateAndTime(text, 'T');
  if (!seconds || text != "Z") return std::nullopt;
  return Date{*seconds};
}

std::optional<Date> dateWithZone(std::string_view text) {
  const auto seconds = takeDateAndTime(text, ' ');
  if (!seconds || !take(text, ' ')) return std::nullopt;
  const bool isWest = take(text, '-');
  if (!isWest && !take(text, '+')) return std::nullopt;
  const auto hours = takeNumber(text, 2);
  const auto minutes = takeNumber(text, 2);
  if (!hours || !minutes || !text.empty()) return std::nullopt;
  const double offset = *hours * 3'600.0 + *minutes * 60.0;
  return Date{isWest ? *seconds + offset : *seconds - offset};
}

std::optional<std::string> bytesFromBase64(std::string_view text) {
  std::string bytes;
  std::uint32_t bits = 0;
  int bitCount = 0;  // of the digits so far that have not become a byte
  std::size_t digits = 0;
  int padding = 0;
  for (const char character : text) {
    if (isBlank(character)) continue;
    if (character == '=') {
      ++padding;
      continue;
    }
    const int digit = base64Digit(character);
    if (digit < 0 || padding > 0) return std::nullopt;
    ++digits;
    bits = bits << 6 | static_cast<std::uint32_t>(digit);
    bitCount += 6;
    if (bitCount < 8) continue;
    bitCount -= 8;
    bytes.push_back(static_cast<char>(bits >> bitCount & 0xFF));
  }
  if (digits % 4 == 1 || padding > 2) return std::nullopt;
  return bytes;
}

}  // namespace halvorn
