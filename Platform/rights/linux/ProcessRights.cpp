#include "Platform/rights/posix/ProcessRights.h"

#include <linux/capability.h>
#include <sys/auxv.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <array>
#include <cstdint>

namespace halvorn::ProcessRights {
namespace {

// Not among them: device nodes, file capabilities, mounting, space reserved for
// the system, looking into others.
constexpr std::array<int, 5> kNeededRights{CAP_CHOWN, CAP_DAC_OVERRIDE, CAP_FOWNER, CAP_SETGID, CAP_SETUID};

constexpr std::uint64_t neededMask() {
  std::uint64_t mask = 0;
  for (const int right : kNeededRights) mask |= std::uint64_t{1} << right;
  return mask;
}

bool cutDown() {
  __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
  std::array<__user_cap_data_struct, 2> sets{};
  if (::syscall(SYS_capget, &header, sets.data()) != 0) return false;
  constexpr std::array<std::uint32_t, 2> needed{static_cast<std::uint32_t>(neededMask()),
                                                static_cast<std::uint32_t>(neededMask() >> 32)};
  for (std::size_t half = 0; half < sets.size(); ++half) {
    sets[half].permitted &= needed[half];
    sets[half].effective = sets[half].permitted;
    sets[half].inheritable = 0;
  }
  return ::syscall(SYS_capset, &header, sets.data()) == 0;
}

}  // namespace

bool comeFromTheFile() {
  return ::getuid() != ::geteuid() || ::getgid() != ::getegid() || ::getauxval(AT_SECURE) != 0;
}

bool keepThoseToFiles() {
  ::prctl(PR_SET_DUMPABLE, 0);
  ::prctl(PR_CAP_AMBIENT, PR_CAP_AMBIENT_CLEAR_ALL, 0, 0, 0);
  if (::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0) return false;
  // Beyond the last right there is, and for one that this process may not give up, nothing happens; the line
  // above keeps those from ever coming back.
  constexpr int moreThanThereAre = 64;
  for (int right = 0; right < moreThanThereAre; ++right) ::prctl(PR_CAPBSET_DROP, right, 0, 0, 0);
  return cutDown();
}

void outliveStarter() { ::prctl(PR_SET_PDEATHSIG, 0); }

}  // namespace halvorn::ProcessRights
