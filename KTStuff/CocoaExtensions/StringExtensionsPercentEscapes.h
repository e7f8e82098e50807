// StringExtensions, percent escapes of URLs, in UTF-8.
#pragma once

#include "Core/Text.h"

namespace halvorn::StringExtensions {

// Every %XX decoded, each run of them as UTF-8. The text itself when it holds no escape, when a "%" is not
// followed by two hexadecimal digits, or when a run is not UTF-8.
[[nodiscard]] Text stringWithExpandedPercentEscapes(const Text& text);

// The same, and then everything escaped that may not stand in a URL: all but ASCII
// letters, digits and -_.!~*'();/?:@&=+$, . So "a b" and "a%20b" both give "a%20b". The
// text itself when it holds a lone surrogate.
[[nodiscard]] Text stringWithPercentEscapes(const Text& text);

}  // namespace halvorn::StringExtensions
