// The numbers of encodings, and ICU's names for them.
#pragma once

#include <optional>

#include "Platform/text/TextCodecs.h"

namespace halvorn::IcuEncodings {

// The converter that reads the encoding, or writes it; null for an unknown number. They differ where a
// byte-order mark is read but never written.
[[nodiscard]] const char* converterForReading(TextEncoding encoding);
[[nodiscard]] const char* converterForWriting(TextEncoding encoding);

// By any name or alias that ICU knows.
[[nodiscard]] std::optional<TextEncoding> encodingNamed(const char* name);

}  // namespace halvorn::IcuEncodings
