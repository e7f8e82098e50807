#include "KTStuff/CocoaExtensions/StringExtensionsScalars.h"

#include <string>

namespace halvorn::StringExtensions {
namespace {

constexpr char32_t kNoModifier = 0;
constexpr char32_t kLightestModifier = 0x1F3FB;
// By skin color. The first two share one modifier, as the types 1 and 2 of the Fitzpatrick scale do.
constexpr char32_t kModifiers[] = {kNoModifier, 0x1F3FB, 0x1F3FB, 0x1F3FC, 0x1F3FD, 0x1F3FE, 0x1F3FF};

void appendHexadecimal(std::u16string& result, char32_t value) {
  if (!result.empty()) result.push_back(u',');
  int digits = 4;
  while (digits < 8 && value >> (4 * digits) != 0) ++digits;
  while (digits-- > 0) result.push_back(u"0123456789ABCDEF"[value >> (4 * digits) & 0xF]);
}

// Where the first modifier stands, never at the start; npos for none.
std::size_t findModifier(std::u16string_view units) {
  for (std::size_t i = 1; i + 1 < units.size(); ++i) {
    if (units[i] == 0xD83C && units[i + 1] >= 0xDFFB && units[i + 1] <= 0xDFFF) return i;
  }
  return Text::npos;
}

}  // namespace

std::uint32_t numberOfUnicodeCharacters(const Text& text) {
  const std::u16string_view units = text.units();
  std::size_t count = units.size();
  for (std::size_t i = 1; i < units.size(); ++i) {
    const bool isPair = isHighSurrogate(units[i - 1]) && isLowSurrogate(units[i]);
    count -= isPair ? 1 : 0;
  }
  return static_cast<std::uint32_t>(count);
}

Text UTF16SequenceString(const Text& text) {
  std::u16string result;
  result.reserve(5 * text.length());
  for (const char16_t unit : text.units()) appendHexadecimal(result, unit);
  return Text(std::move(result));
}

Text UTF32SequenceString(const Text& text) {
  std::u16string result;
  result.reserve(5 * text.length());
  forUTF32Characters(text, [&](char32_t scalar) { appendHexadecimal(result, scalar); });
  return Text(std::move(result));
}

char32_t longCharacterAtIndex(const Text& text, std::int32_t index) {
  const std::u16string_view units = text.units();
  const auto i = static_cast<std::size_t>(index);
  if (index < 0 || i >= units.size()) return 0;
  const bool isPair = isHighSurrogate(units[i]) && i + 1 < units.size() && isLowSurrogate(units[i + 1]);
  return isPair ? scalarOfPair(units[i], units[i + 1]) : units[i];
}

Text emojiStringWithSkinColor(const Text& text, std::int32_t color) {
  const std::u16string_view units = text.units();
  if (units.empty()) return text;
  const char32_t wanted = color >= 1 && color <= 6 ? kModifiers[color] : kNoModifier;
  const std::size_t at = findModifier(units);
  const char32_t present = at == Text::npos ? kNoModifier : kLightestModifier + (units[at + 1] - 0xDFFBu);
  if (wanted == present) return text;

  std::u16string result;
  if (present != kNoModifier) {
    result.append(units.substr(0, at));
    // KEEP: "no modifier" is scalar 0, and that is what is put in.
    appendCode(result, wanted);
    result.append(units.substr(at + 2));
    return Text(std::move(result));
  }
  const std::size_t headLength = longCharacterAtIndex(text, 0) >= 0x10000 ? 2 : 1;
  std::u16string_view tail = units.substr(headLength);
  // The modifier makes the variation selector in front of a joiner superfluous.
  if (tail.starts_with(u"\uFE0F\u200D")) tail.remove_prefix(1);
  result.append(units.substr(0, headLength));
  appendCode(result, wanted);
  result.append(tail);
  return Text(std::move(result));
}

}  // namespace halvorn::StringExtensions
