// Dates and base64 as property lists write them.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "Core/Date.h"

namespace halvorn {

// "2026-11-21T14:30:05Z".
[[nodiscard]] std::optional<Date> dateFromIso8601(std::string_view text);
// "2026-11-21 14:30:05 +0100", the zone in hours and minutes.
[[nodiscard]] std::optional<Date> dateWithZone(std::string_view text);
// Blanks and line ends anywhere are skipped; nullopt for anything that is not base64.
[[nodiscard]] std::optional<std::string> bytesFromBase64(std::string_view text);

}  // namespace halvorn
