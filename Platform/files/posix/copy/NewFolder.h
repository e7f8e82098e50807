// Telling a folder that was just made from one that was put in its place.
#pragma once

#include <sys/types.h>

namespace halvorn {

// Whether the open folder can be what this process has just made, asking for that mode: its own, empty, with
// no more rights than asked for, and no older. Where others may write, they may have put something else there
// by the time it is opened.
[[nodiscard]] bool isNewFolder(int folder, mode_t asked);

}  // namespace halvorn
