// The text in a file of unknown encoding.
#pragma once

#include <optional>
#include <string_view>

#include "Core/Text.h"

namespace halvorn {

// UTF-16 of either byte order, with a byte order mark or recognised by its zero bytes; else
// UTF-8, with or without a mark; else every byte is one character of ISO 8859-1. nullopt for
// UTF-16 with half a character at its end.
[[nodiscard]] std::optional<Text> decodeText(std::string_view bytes);

[[nodiscard]] bool looksLikeUtf16(std::string_view bytes);

}  // namespace halvorn
