// The local sockets of this machine, as the kernel lists them (and as `ss -xp` shows them).
#pragma once

#include <sys/types.h>

#include <cstdint>
#include <string>
#include <vector>

namespace halvorn {

struct UnixSocket {
  ino_t number = 0;  // as in the links of /proc/PID/fd
  ino_t peer = 0;    // the other end of a connection; 0 for none, and before the other end was taken
  bool isListening = false;
  // Where it was bound; a connection that was taken there bears the same. "" for others, and for names that
  // are no paths.
  std::string path;
  // Which file that made, in the kernel's own numbers; 0 where there is none.
  std::uint32_t fileNumber = 0;
  std::uint32_t fileDevice = 0;
};

// Empty where the kernel does not tell. Thread: any.
[[nodiscard]] std::vector<UnixSocket> unixSockets();

}  // namespace halvorn
