// StringExtensions, white space: blanks at both ends, texts on one line.
#pragma once

#include "Core/MutableText.h"
#include "Core/Text.h"
#include "Platform/text/Unicode.h"

namespace halvorn::StringExtensions {

// A new mutable text: the receiver without Unicode white space at both ends.
[[nodiscard]] MutableText trimWhitespace(const Text& text, const Unicode& unicode);

// The text without units below 33 and U+00A0 at both ends; other Unicode spaces and U+007F stay. The text
// itself when there is nothing to trim.
[[nodiscard]] Text stringByTrimmingWhitespace(const Text& text);
// The same object when there is nothing to trim, else a new one; the receiver never changes.
[[nodiscard]] MutableText stringByTrimmingWhitespace(const MutableText& text);

// Every control or format character (categories Cc and Cf) becomes one space, then Unicode white space is
// trimmed at both ends. "a\r\nb" gives "a  b".
[[nodiscard]] Text asSingleLine(const Text& text, const Unicode& unicode);

}  // namespace halvorn::StringExtensions
