#include "tests/rights/adapter/attacks/Racer.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <new>

namespace halvorn {

Racer::Racer(const Pairs& pairs, uid_t user) {
  void* shared = ::mmap(nullptr, sizeof(Count), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  swaps_ = new (shared) Count(0);
  process_ = ::fork();
  if (process_ != 0) return;
  ::prctl(PR_SET_PDEATHSIG, SIGKILL);
  if (::setgid(user) != 0 || ::setuid(user) != 0) ::_exit(1);
  while (true) {
    for (const auto& [a, b] : pairs) {
      if (::renameat2(AT_FDCWD, a.c_str(), AT_FDCWD, b.c_str(), RENAME_EXCHANGE) == 0) ++*swaps_;
    }
  }
}

Racer::~Racer() {
  ::kill(process_, SIGKILL);
  ::waitpid(process_, nullptr, 0);
  ::munmap(swaps_, sizeof(Count));
}

}  // namespace halvorn
