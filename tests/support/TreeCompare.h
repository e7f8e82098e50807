// What differs between a tree and its copy.
#pragma once

#include <string>
#include <vector>

namespace halvorn {

// One line for every difference in kind, bytes, owner, mode, times, links, hard links, attributes, device
// numbers and holes; empty when there is none. Follows no link and opens nothing but files and folders.
[[nodiscard]] std::vector<std::string> differencesBetween(const std::string& original,
                                                          const std::string& copy);

}  // namespace halvorn
