// The classic resource fork: a file of numbered pieces, and the wrappers it travels in.
//
// All of these take any bytes: what is truncated, overlapping or pointing outside counts as missing.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "Core/FourCharCode.h"

namespace halvorn {

// The bytes of one resource.
[[nodiscard]] std::optional<std::string> resourceIn(std::string_view fork, FourCharCode type,
                                                    std::int16_t id);

// The resource fork in an AppleDouble file, the "._Name" that lies beside "Name" on foreign file systems.
[[nodiscard]] std::optional<std::string> resourceForkInAppleDouble(std::string_view file);

// The resource fork of the item, wherever this file system keeps it; nullopt when it has none.
[[nodiscard]] std::optional<std::string> readResourceFork(const std::string& path);

}  // namespace halvorn
