#include "Platform/running/posix/SpawnCalls.h"

#include <fcntl.h>
#include <unistd.h>

namespace halvorn::SpawnCalls {

char** environment() { return ::environ; }

bool openPipe(int (&ends)[2]) { return ::pipe2(ends, O_CLOEXEC) == 0; }

void inheritStandardStreamsAlone(posix_spawn_file_actions_t& actions, posix_spawnattr_t& /*attributes*/) {
  ::posix_spawn_file_actions_addclosefrom_np(&actions, STDERR_FILENO + 1);
}

}  // namespace halvorn::SpawnCalls
