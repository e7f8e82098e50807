// Telling a folder that was just made from one that was put in its place.
#pragma once

#include <sys/types.h>

#include "Platform/files/posix/copy/Cause.h"

namespace halvorn {

// Whether the open folder can be what this process has just made, asking for that mode: its own, empty, with
// no more rights than asked for, and no older. Where others may write, they may have put something else there
// by the time it is opened. Clears errno first, so that a call that failed is told from an answer.
[[nodiscard]] bool isNewFolder(int folder, mode_t asked);

// What to say where it is not.
inline Cause causeOfExchange() {
  return Cause::ofSystemOrOurs(Cause::Operation::Make, "something else took its name while it was made");
}

}  // namespace halvorn
