// StringExtensions, scalars: texts as Unicode scalar values rather than UTF-16 units.
#pragma once

#include <cstdint>

#include "Core/Text.h"
#include "KTStuff/CocoaExtensions/StringExtensionsUnits.h"

namespace halvorn::StringExtensions {

// Units less one for each well-formed surrogate pair; a lone surrogate counts as one.
[[nodiscard]] std::uint32_t numberOfUnicodeCharacters(const Text& text);

// Calls the block with each scalar, in order. A lone low surrogate is reported as it is.
// KEEP: a high surrogate without its low half is dropped together with the unit that follows it.
template <typename Block>
void forUTF32Characters(const Text& text, Block&& block) {
  constexpr std::size_t kRun = 16;
  const std::u16string_view units = text.units();
  std::size_t i = 0;
  while (i < units.size()) {
    // A run without pairs goes through a loop that carries nothing from one unit to the next.
    if (i + kRun <= units.size() && !hasHighSurrogate(units.substr(i, kRun))) {
      for (const char16_t unit : units.substr(i, kRun)) block(static_cast<char32_t>(unit));
      i += kRun;
      continue;
    }
    const std::size_t end = std::min(i + kRun, units.size());
    while (i < end && !isHighSurrogate(units[i])) block(static_cast<char32_t>(units[i++]));
    for (; i < end && isHighSurrogate(units[i]); i += 2) {
      const bool isPair = i + 1 < units.size() && isLowSurrogate(units[i + 1]);
      if (isPair) block(scalarOfPair(units[i], units[i + 1]));
    }
  }
}

// The units, or the scalars as forUTF32Characters reports them, each as at least four upper-case hexadecimal
// digits, with "," between them: "0041,D83D,DE00" and "0041,1F600".
[[nodiscard]] Text UTF16SequenceString(const Text& text);
[[nodiscard]] Text UTF32SequenceString(const Text& text);

// The scalar of the pair that begins there, else the unit there, so an index into the middle of a pair gives
// the low surrogate. 0 for an index outside the text.
[[nodiscard]] char32_t longCharacterAtIndex(const Text& text, std::int32_t index);

// The emoji with that skin color: 1 to 6, of which 1 and 2 are the lightest; any other number
// means no modifier. The text itself when it has that color already. Only the first modifier is
// changed, and one at the very start of the text is none. KEEP: asking for no modifier where
// there is one puts U+0000 in its place.
[[nodiscard]] Text emojiStringWithSkinColor(const Text& text, std::int32_t color);

}  // namespace halvorn::StringExtensions
