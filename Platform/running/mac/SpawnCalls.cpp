#include "Platform/running/posix/SpawnCalls.h"

#include <crt_externs.h>
#include <fcntl.h>
#include <unistd.h>

#include <initializer_list>

namespace halvorn::SpawnCalls {

char** environment() { return *::_NSGetEnviron(); }

// Programs that another thread starts meanwhile inherit nothing either: inheritStandardStreamsAlone() sees to that.
bool openPipe(int (&ends)[2]) {
  if (::pipe(ends) != 0) return false;
  for (const int end : ends) (void)::fcntl(end, F_SETFD, FD_CLOEXEC);
  return true;
}

void inheritStandardStreamsAlone(posix_spawn_file_actions_t& actions, posix_spawnattr_t& attributes) {
  short flags = 0;
  (void)::posix_spawnattr_getflags(&attributes, &flags);
  (void)::posix_spawnattr_setflags(&attributes, static_cast<short>(flags | POSIX_SPAWN_CLOEXEC_DEFAULT));
  for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
    (void)::posix_spawn_file_actions_addinherit_np(&actions, stream);
}

}  // namespace halvorn::SpawnCalls
