// StringExtensions, encodings: bytes of known and unknown encodings become
// texts, texts are appended to files.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "Core/FourCharCode.h"
#include "Core/Log.h"
#include "Core/MutableText.h"
#include "Core/Text.h"
#include "Platform/files/FileHandles.h"
#include "Platform/files/FileManager.h"
#include "Platform/text/FourCharCodes.h"
#include "Platform/text/TextCodecs.h"
#include "Platform/text/Unicode.h"

namespace halvorn {

namespace StringExtensions {

// Files beyond this size are not read as text.
constexpr std::size_t kLargestTextFile = std::size_t{256} << 20;

// Its four characters.
[[nodiscard]] Text stringWithOSType(FourCharCode code, const FourCharCodes& codes);
// Mac OS Roman bytes; without a length they end before the first zero byte. A negative length is none.
[[nodiscard]] Text stringWithMacRomanCString(const char* bytes, std::int32_t length);
[[nodiscard]] Text stringWithMacRomanCString(const char* bytes);

// How much a text looks like one, from the first 1000 units: letters, digits, blanks and line ends
// speak for it, other control characters against it, codes without a character ten times as much,
// all by the number of units. At most 1. The name of the candidate does not count. An empty text
// gives NaN, which no comparison prefers.
[[nodiscard]] float reasonableTextFactor(const Text& text, const Text& name, const Unicode& unicode);

// The encoding that the byte-order mark at the start says; the default without
// one and for what cannot be read.
[[nodiscard]] TextEncoding explicitEncodingOfFile(const Text& path, TextEncoding defaultEncoding,
                                                  const FileManager& files);

// The text of a file of unknown encoding: as its byte-order mark says; else as the platform's
// detector says, as far as it can be believed; else in the candidate that looks most like text.
// nullopt for what cannot be read or decoded.
[[nodiscard]] OptionalText stringWithBestEncodingFromFile(const Text& path, const FileManager& files,
                                                          const TextCodecs& codecs, const Unicode& unicode);

// The text of an HTML page in the character set that it declares, else in Latin-1. Only a bare name is
// understood: KEEP: charset="utf-8" in quotes is not, charset=utf-8 within content="..." is. Logs: "no HTML
// in Latin" and "no HTML in Unicode".
[[nodiscard]] Text stringWithHTML(std::string_view data, const TextCodecs& codecs, const Log& log);

// Writes the text behind what the file holds, without byte-order mark or line break. A missing file is made,
// also when nothing comes to be written. Fails: false, and nothing was written, when the file cannot be
// opened or the encoding lacks a character of the text.
[[nodiscard]] bool appendToFile(const Text& text, const Text& path, TextEncoding encoding, FileManager& files,
                                const FileHandles& handles, const TextCodecs& codecs);

}  // namespace StringExtensions

namespace MutableStringExtensions {  // the same for the mutable class

// As those of StringExtensions: a new object.
[[nodiscard]] MutableText stringWithMacRomanCString(const char* bytes, std::int32_t length);
[[nodiscard]] MutableText stringWithMacRomanCString(const char* bytes);

}  // namespace MutableStringExtensions
}  // namespace halvorn
