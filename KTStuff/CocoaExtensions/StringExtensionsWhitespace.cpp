#include "KTStuff/CocoaExtensions/StringExtensionsWhitespace.h"

#include "KTStuff/CocoaExtensions/StringExtensionsUnits.h"

namespace halvorn::StringExtensions {
namespace {

// KEEP: neither U+3000 nor U+007F is blank here, and every C0 control is.
constexpr bool isBlank(char16_t unit) { return unit < 33 || unit == 0xA0; }

template <typename UnitTest>
std::u16string_view trimmed(std::u16string_view units, UnitTest isTrimmed) {
  while (!units.empty() && isTrimmed(units.front())) units.remove_prefix(1);
  while (!units.empty() && isTrimmed(units.back())) units.remove_suffix(1);
  return units;
}

// All of Unicode's white space lies in the first plane, so single units tell.
std::u16string_view trimmedOfWhiteSpace(std::u16string_view units, const Unicode& unicode) {
  return trimmed(units, [&](char16_t unit) { return unicode.isWhiteSpace(unit); });
}

}  // namespace

MutableText trimWhitespace(const Text& text, const Unicode& unicode) {
  return MutableText(Text(std::u16string(trimmedOfWhiteSpace(text.units(), unicode))));
}

Text stringByTrimmingWhitespace(const Text& text) {
  const std::u16string_view units = text.units();
  const std::size_t first = findUnit(units, 0, [](char16_t unit) { return !isBlank(unit); });
  if (first == Text::npos) return text.isEmpty() ? text : Text();
  return text.substring(first, trimmed(units.substr(first), isBlank).size());
}

MutableText stringByTrimmingWhitespace(const MutableText& text) {
  const std::u16string_view kept = trimmed(text.units(), isBlank);
  if (kept.size() == text.length()) return text;
  return MutableText(Text(std::u16string(kept)));
}

Text asSingleLine(const Text& text, const Unicode& unicode) {
  const std::u16string_view units = text.units();
  std::u16string line;
  line.reserve(units.size());
  for (std::size_t i = 0; i < units.size(); ++i) {
    const bool isPair = isHighSurrogate(units[i]) && i + 1 < units.size() && isLowSurrogate(units[i + 1]);
    const char32_t scalar = isPair ? scalarOfPair(units[i], units[i + 1]) : units[i];
    // KEEP: joiners and direction marks are format characters too, so an emoji sequence falls apart.
    appendCode(line, unicode.isControl(scalar) ? U' ' : scalar);
    if (isPair) ++i;
  }
  return Text(std::u16string(trimmedOfWhiteSpace(line, unicode)));
}

}  // namespace halvorn::StringExtensions
