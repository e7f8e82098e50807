// Four-character codes (signatures): 32 bits that read as four Mac OS Roman characters, "ABCD" = 0x41424344.
#pragma once

#include <cstdint>

#include "Core/Text.h"

namespace halvorn {

using FourCharCode = std::uint32_t;  // the first character in the highest byte

// 0 unless the text is exactly four characters of Mac OS Roman, none of them a control character.
// That leaves codes with a control character out of reach of any text: no list of texts can name them.
[[nodiscard]] FourCharCode fourCharCodeFromText(const Text& text);

// Always four characters; bytes are read as Mac OS Roman.
[[nodiscard]] Text textFromFourCharCode(FourCharCode code);

// Of a literal: fourCharCode("EDIT").
constexpr FourCharCode fourCharCode(const char (&code)[5]) {
  return static_cast<FourCharCode>(static_cast<unsigned char>(code[0])) << 24 |
         static_cast<FourCharCode>(static_cast<unsigned char>(code[1])) << 16 |
         static_cast<FourCharCode>(static_cast<unsigned char>(code[2])) << 8 |
         static_cast<FourCharCode>(static_cast<unsigned char>(code[3]));
}

// The signature that a system may give a program which declares none.
inline constexpr FourCharCode kUndeclaredSignature = fourCharCode("????");

}  // namespace halvorn
