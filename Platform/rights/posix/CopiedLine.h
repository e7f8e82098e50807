// The line by which the tool tells whoever started it how much it has copied.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace halvorn {

// Often enough for an eye, seldom enough for a disk.
inline constexpr std::uint64_t kToldEachBytes = std::uint64_t{4} << 20;

// Writes the line to the standard output, in one piece. Thread: any.
void tellCopied(std::uint64_t bytes);

// What such a line says; nullopt for any other line. `line` is without its end.
[[nodiscard]] std::optional<std::uint64_t> bytesInCopiedLine(std::string_view line);

}  // namespace halvorn
