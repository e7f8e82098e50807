#include <fcntl.h>
#include <linux/ioprio.h>
#include <sched.h>
#include <sys/personality.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cstring>
#include <string_view>

#include "Platform/rights/posix/ProcessRights.h"
#include "Platform/running/posix/FileDescriptor.h"

namespace halvorn::ProcessRights {
namespace {

constexpr unsigned long kUsualTimerSlack = 50'000;  // nanoseconds

void useEveryProcessor() {
  // More than there are; of those named, the system takes those that this process may have.
  cpu_set_t all;
  std::memset(&all, 0xFF, sizeof all);
  ::sched_setaffinity(0, sizeof all, &all);
}

void bePickedLikeOthersWhenMemoryRunsOut() {
  constexpr std::string_view usual = "0";
  const FileDescriptor file(::open("/proc/self/oom_score_adj", O_WRONLY | O_CLOEXEC));
  if (file) (void)retried([&] { return ::write(file.get(), usual.data(), usual.size()); });
}

}  // namespace

void takeUsualShare() {
  const sched_param none{};
  ::sched_setscheduler(0, SCHED_OTHER, &none);
  ::setpriority(PRIO_PROCESS, 0, 0);
  // From here on the priority for disks follows the one above.
  ::syscall(SYS_ioprio_set, IOPRIO_WHO_PROCESS, 0, IOPRIO_PRIO_VALUE(IOPRIO_CLASS_NONE, 0));
  useEveryProcessor();
  bePickedLikeOthersWhenMemoryRunsOut();
  ::prctl(PR_SET_TIMERSLACK, kUsualTimerSlack, 0, 0, 0);
  ::personality(PER_LINUX);
}

}  // namespace halvorn::ProcessRights
