// The numbers of encodings, and ICU's names for them.
#pragma once

#include <optional>
#include <string_view>

#include "Platform/text/TextCodecs.h"

namespace halvorn::IcuEncodings {

// The converter that reads the encoding, or writes it; null for an unknown number. They differ where a
// byte-order mark is read but never written.
[[nodiscard]] const char* converterForReading(TextEncoding encoding);
[[nodiscard]] const char* converterForWriting(TextEncoding encoding);

// By any name or alias that ICU knows.
[[nodiscard]] std::optional<TextEncoding> encodingNamed(const char* name);

// Characters of ASCII that the converter takes for others, unit for unit; both empty for most encodings.
struct Misreading {
  std::u16string_view read;    // what the converter makes of the bytes, and takes for them
  std::u16string_view really;  // what the bytes stand for
};
[[nodiscard]] Misreading misreadingOf(TextEncoding encoding);

}  // namespace halvorn::IcuEncodings
