// The upper half of the Mac OS Roman encoding.
#pragma once

#include <array>
#include <optional>

namespace halvorn {

// Bytes 0x80..0xFF; the lower half is ASCII.
extern const std::array<char16_t, 128> kMacRomanUpperHalf;

// Every byte stands for a character; nullopt for a character that the encoding lacks.
[[nodiscard]] char16_t unitFromMacRoman(unsigned char byte);
[[nodiscard]] std::optional<unsigned char> macRomanFromUnit(char16_t unit);

}  // namespace halvorn
