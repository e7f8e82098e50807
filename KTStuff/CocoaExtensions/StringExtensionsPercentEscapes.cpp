#include "KTStuff/CocoaExtensions/StringExtensionsPercentEscapes.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>

#include "KTStuff/CocoaExtensions/StringExtensionsUnits.h"

namespace halvorn::StringExtensions {
namespace {

constexpr std::u16string_view kDigits = u"0123456789ABCDEF";

constexpr std::array<bool, 128> makeLegalUnits() {
  std::array<bool, 128> legal{};
  for (const char16_t unit :
       std::u16string_view(u"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789"
                           u"-_.!~*'();/?:@&=+$,")) {
    legal[unit] = true;
  }
  return legal;
}
constexpr std::array<bool, 128> kLegalUnits = makeLegalUnits();

constexpr bool isLegal(char16_t unit) { return unit < 128 && kLegalUnits[unit]; }

// The value of a hexadecimal digit, -1 for anything else.
constexpr int hexadecimalValue(char16_t unit) {
  if (unit >= u'0' && unit <= u'9') return unit - u'0';
  if (unit >= u'A' && unit <= u'F') return unit - u'A' + 10;
  if (unit >= u'a' && unit <= u'f') return unit - u'a' + 10;
  return -1;
}

// Takes the %XX that the rest begins with; nullopt when it is malformed.
std::optional<std::uint8_t> takeEscape(std::u16string_view& rest) {
  if (rest.size() < 3) return std::nullopt;
  const int high = hexadecimalValue(rest[1]);
  const int low = hexadecimalValue(rest[2]);
  if (high < 0 || low < 0) return std::nullopt;
  rest.remove_prefix(3);
  return static_cast<std::uint8_t>(high * 16 + low);
}

// How many bytes follow the first one of a UTF-8 sequence, and the smallest scalar such a sequence may hold.
struct SequenceForm {
  int following;
  char32_t bits;
  char32_t smallest;
};
std::optional<SequenceForm> sequenceForm(std::uint8_t first) {
  if (first < 0x80) return SequenceForm{0, first, 0};
  if (first >= 0xC0 && first < 0xE0) return SequenceForm{1, first & 0x1Fu, 0x80};
  if (first >= 0xE0 && first < 0xF0) return SequenceForm{2, first & 0x0Fu, 0x800};
  if (first >= 0xF0 && first < 0xF8) return SequenceForm{3, first & 0x07u, 0x10000};
  return std::nullopt;
}

// Takes the escapes that make up one character; nullopt when they do not.
std::optional<char32_t> takeEscapedScalar(std::u16string_view& rest) {
  const auto first = takeEscape(rest);
  const auto form = first ? sequenceForm(*first) : std::nullopt;
  if (!form) return std::nullopt;
  char32_t scalar = form->bits;
  for (int i = 0; i < form->following; ++i) {
    if (rest.empty() || rest[0] != u'%') return std::nullopt;
    const auto next = takeEscape(rest);
    if (!next || (*next & 0xC0) != 0x80) return std::nullopt;
    scalar = scalar << 6 | (*next & 0x3Fu);
  }
  const bool isScalar =
      scalar >= form->smallest && scalar <= 0x10FFFF && (scalar < 0xD800 || scalar > 0xDFFF);
  return isScalar ? std::optional(scalar) : std::nullopt;
}

std::optional<std::u16string> expanded(std::u16string_view rest) {
  std::u16string result;
  result.reserve(rest.size());
  while (!rest.empty()) {
    const std::size_t percent = findUnit(rest, 0, [](char16_t unit) { return unit == u'%'; });
    result.append(rest.substr(0, percent));
    if (percent == Text::npos) break;
    rest.remove_prefix(percent);
    const auto scalar = takeEscapedScalar(rest);
    if (!scalar) return std::nullopt;
    appendCode(result, *scalar);
  }
  return result;
}

char16_t* writeEscapedByte(char16_t* to, char32_t byte) {
  *to++ = u'%';
  *to++ = kDigits[byte >> 4 & 0xF];
  *to++ = kDigits[byte & 0xF];
  return to;
}

// The escapes of the UTF-8 bytes; returns where they end.
char16_t* writeEscaped(char16_t* to, char32_t scalar) {
  const auto following = [&](int shift) { return 0x80 | (scalar >> shift & 0x3F); };
  if (scalar < 0x80) return writeEscapedByte(to, scalar);
  if (scalar < 0x800) {
    to = writeEscapedByte(to, 0xC0 | scalar >> 6);
    return writeEscapedByte(to, following(0));
  }
  if (scalar < 0x10000) {
    to = writeEscapedByte(to, 0xE0 | scalar >> 12);
  } else {
    to = writeEscapedByte(to, 0xF0 | scalar >> 18);
    to = writeEscapedByte(to, following(12));
  }
  to = writeEscapedByte(to, following(6));
  return writeEscapedByte(to, following(0));
}

// nullopt for a lone surrogate. Units are collected in a small buffer that always has room, which is much
// quicker than adding them to a text one by one.
std::optional<std::u16string> escaped(std::u16string_view units) {
  constexpr std::size_t kChunk = 64;
  constexpr std::size_t kLongestEscape = 12;  // four bytes
  std::u16string result;
  result.reserve(units.size() + units.size() / 4);
  char16_t buffer[kChunk * kLongestEscape];
  for (std::size_t i = 0; i < units.size();) {
    const std::size_t end = std::min(i + kChunk, units.size());
    char16_t* to = buffer;
    while (i < end) {
      const char16_t unit = units[i];
      if (isLegal(unit)) {
        *to++ = unit;
        ++i;
        continue;
      }
      const bool isPair = isHighSurrogate(unit) && i + 1 < units.size() && isLowSurrogate(units[i + 1]);
      if (isSurrogate(unit) && !isPair) return std::nullopt;
      to = writeEscaped(to, isPair ? scalarOfPair(unit, units[i + 1]) : unit);
      i += isPair ? 2 : 1;
    }
    result.append(buffer, static_cast<std::size_t>(to - buffer));
  }
  return result;
}

}  // namespace

Text stringWithExpandedPercentEscapes(const Text& text) {
  if (findUnit(text.units(), 0, [](char16_t unit) { return unit == u'%'; }) == Text::npos) return text;
  auto result = expanded(text.units());
  return result ? Text(std::move(*result)) : text;
}

Text stringWithPercentEscapes(const Text& text) {
  auto result = escaped(stringWithExpandedPercentEscapes(text).units());
  if (!result || *result == text.units()) return text;
  return Text(std::move(*result));
}

}  // namespace halvorn::StringExtensions
