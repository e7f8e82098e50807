// Reading, for programs that are linked statically and small.
#pragma once

#include <string>

namespace halvorn {

// All bytes up to the end or the first failure.
[[nodiscard]] std::string readAll(int file);
// "" for a file that cannot be read.
[[nodiscard]] std::string contentsOf(const std::string& path);

}  // namespace halvorn
