// StringExtensions, digests.
#pragma once

#include "Core/Text.h"
#include "Platform/text/Digests.h"

namespace halvorn::StringExtensions {

// The MD5 of the text's bytes (UTF-8, see Text) as 32 lower-case hexadecimal digits; "" where the system
// refuses it. KEEP: the bytes end at the first U+0000.
[[nodiscard]] Text MD5String(const Text& text, const Digests& digests);

}  // namespace halvorn::StringExtensions
