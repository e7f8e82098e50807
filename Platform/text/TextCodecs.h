// Text as bytes, and bytes as text.
//
// Thread: any. Fails: what cannot be converted in full is answered with nullopt;
// nothing is replaced or left out.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Core/Text.h"

namespace halvorn {

// Encodings go by number. Those named here are known everywhere; others are known to some platforms and to
// the names that encodingForIanaName() knows.
using TextEncoding = std::uint32_t;
namespace TextEncodings {
constexpr TextEncoding ascii = 1;   // seven bits
constexpr TextEncoding utf8 = 4;    // without a byte-order mark
constexpr TextEncoding latin1 = 5;  // ISO 8859-1
constexpr TextEncoding latin2 = 9;  // ISO 8859-2
// UTF-16 whose byte-order mark says how it is to be read; without one the high byte comes first.
constexpr TextEncoding unicode = 10;
constexpr TextEncoding windowsLatin1 = 12;              // code page 1252
constexpr TextEncoding windowsTurkish = 14;             // code page 1254
constexpr TextEncoding windowsLatin2 = 15;              // code page 1250
constexpr TextEncoding macRoman = 30;                   // of the classic Mac OS
constexpr TextEncoding latin5 = 0x80000209;             // ISO 8859-9, Turkish
constexpr TextEncoding utf16BigEndian = 0x90000100;     // the high byte first, no byte-order mark
constexpr TextEncoding utf16LittleEndian = 0x94000100;  // the low byte first, likewise
constexpr TextEncoding utf32BigEndian = 0x98000100;     // four bytes, the highest first
constexpr TextEncoding utf32LittleEndian = 0x9C000100;  // four bytes, the lowest first
}  // namespace TextEncodings

struct DetectedEncoding {     // a guess and how good it is
  TextEncoding encoding = 0;  // by number
  int confidence = 0;         // 0 to 100
};

class TextCodecs {
 public:
  virtual ~TextCodecs() = default;

  // A byte-order mark at the start belongs to the encoding, not to the text. nullopt when the bytes are not
  // of that encoding to their very end, or the encoding is unknown.
  [[nodiscard]] virtual std::optional<Text> decode(std::string_view bytes, TextEncoding encoding) const = 0;
  // Never writes a byte-order mark, so a text that begins with U+FEFF or, in `unicode`, with U+FFFE does not
  // come back. nullopt when the encoding lacks a character of the text, or is unknown; a lone surrogate is a
  // character that no encoding has.
  [[nodiscard]] virtual std::optional<std::string> encode(const Text& text, TextEncoding encoding) const = 0;

  // By registered name or alias, in any case: "utf-8", "ISO-8859-1". nullopt for an unknown name.
  [[nodiscard]] virtual std::optional<TextEncoding> encodingForIanaName(const Text& name) const = 0;
  // What the bytes look like, the likeliest first, as far as decode() knows those encodings. Statistics:
  // short texts say little, and a detector knows some encodings only.
  [[nodiscard]] virtual std::vector<DetectedEncoding> detectEncodings(std::string_view bytes) const = 0;
};

}  // namespace halvorn
