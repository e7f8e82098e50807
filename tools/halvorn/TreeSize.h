// How much room a tree takes.
#pragma once

#include <cstdint>
#include <string>

namespace halvorn {

// In bytes, in blocks of 4096 as file systems have them; a file with several names in the tree counts once, and links
// are not followed. What cannot be read counts as nothing.
[[nodiscard]] std::uint64_t sizeOfTree(const std::string& path);

}  // namespace halvorn
