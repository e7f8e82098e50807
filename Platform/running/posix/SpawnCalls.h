// What starting a program takes and no two systems call the same. Each system's folder defines these.
#pragma once

#include <spawn.h>

namespace halvorn::SpawnCalls {

// The variables of this process, as posix_spawn and its like take them.
[[nodiscard]] char** environment();

// The ends to read from and to write to. No program that another thread starts
// meanwhile inherits them. Fails: false.
[[nodiscard]] bool openPipe(int (&ends)[2]);

// The child gets the three standard streams, as the actions so far make them, and no other descriptor that
// is open here. To be called when all other actions and flags are set.
void inheritStandardStreamsAlone(posix_spawn_file_actions_t& actions, posix_spawnattr_t& attributes);

}  // namespace halvorn::SpawnCalls
