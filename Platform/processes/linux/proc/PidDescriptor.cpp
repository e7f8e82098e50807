#include "Platform/processes/linux/proc/PidDescriptor.h"

#include <poll.h>
#include <signal.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace halvorn {

// Called by number: the C library of Debian 12 has names for these, older ones do not.
PidDescriptor::PidDescriptor(pid_t pid) : descriptor_(static_cast<int>(::syscall(SYS_pidfd_open, pid, 0u))) {}

bool PidDescriptor::hasEnded() const {
  if (!isHeld()) return true;
  pollfd entry{descriptor_.get(), POLLIN, 0};
  return retried([&] { return ::poll(&entry, 1, 0); }) == 1;
}

bool PidDescriptor::sendSignal(int signal) const {
  // The kernel takes signals for a zombie.
  if (hasEnded()) return false;
  return ::syscall(SYS_pidfd_send_signal, descriptor_.get(), signal, nullptr, 0u) == 0;
}

}  // namespace halvorn
