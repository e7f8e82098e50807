// Starts a program of the system with nothing of this process: signals as at login, root folder, no
// descriptors but the standard ones, an environment of two entries.
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace halvorn {

// The first word is the program's path. Standard output and error both go to `output`.
// Returns 0, or the system's error number.
[[nodiscard]] int spawnClean(const std::vector<std::string>& words, int input, int output, pid_t& pid);

}  // namespace halvorn
