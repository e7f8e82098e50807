// StringExtensions, lines: line breaks, splitting, repetition.
#pragma once

#include <cstdint>
#include <vector>

#include "Core/Text.h"

namespace halvorn::StringExtensions {

// The lines of a text with one kind of break throughout: "\r\n" when the text holds one
// anywhere, else "\n" when it holds one, else "\r". A text without a break is one line; a break
// at the end is followed by an empty line.
[[nodiscard]] std::vector<Text> arrayOfLines(const Text& text);

// Every "\r\n", then every "\r", then every "\n" replaced by the separator (nullopt means ""), a kind that
// equals the separator left alone. The text itself when nothing was replaced. With "\n", "\r" or a separator
// without these two, every break of any kind becomes exactly one separator. With "\r\n" it does not: a lone
// "\n" becomes "\r\n", a lone "\r" becomes "\r\r\n", a "\r\n" becomes "\r\r\n\r\n".
[[nodiscard]] Text withLineSeparator(const Text& text, const OptionalText& separator);

// The parts between the separators. ",a,,b," gives "", "a", "", "b": a separator at the end begins no part,
// and an empty text has none.
[[nodiscard]] std::vector<Text> componentsSeparatedByCharacter(const Text& text, char16_t character);

// The text that many times in a row; "" for a count below 1, the text itself for 1.
[[nodiscard]] Text repeated(const Text& text, std::int32_t count);

}  // namespace halvorn::StringExtensions
