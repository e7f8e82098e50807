// The bytes of a file.
#pragma once

#include <sys/stat.h>

namespace halvorn::FileContents {

// Fills the new, empty file with the bytes of the other, holes where it has holes. `facts` are the
// original's.
[[nodiscard]] bool copy(int source, int target, const struct stat& facts);

}  // namespace halvorn::FileContents
