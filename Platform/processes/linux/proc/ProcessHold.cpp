#include "Platform/processes/linux/proc/ProcessHold.h"

#include <signal.h>
#include <sys/resource.h>

#include <cerrno>
#include <utility>

#include "Platform/processes/linux/proc/ProcFiles.h"

namespace halvorn {
namespace {

// The system gives out the lowest number that is free.
bool leavesEnough(int descriptor) {
  rlimit limit{};
  if (::getrlimit(RLIMIT_NOFILE, &limit) != 0 || limit.rlim_cur == RLIM_INFINITY) return true;
  return static_cast<rlim_t>(descriptor) + ProcessHold::kLeftForOthers < limit.rlim_cur;
}

bool hasEndedThere(const ProcStat& stat) {
  const bool isOver = stat.state == 'Z' || stat.state == 'X';
  // A process whose first thread is gone and others work has not ended.
  return isOver && stat.threads <= 1;
}

}  // namespace

ProcessHold::ProcessHold(const ProcFiles& files, pid_t pid, std::uint64_t startTicks,
                         PidDescriptor descriptor)
    : files_(files), pid_(pid), startTicks_(startTicks), descriptor_(std::move(descriptor)) {
  if (descriptor_.isHeld() && !leavesEnough(descriptor_.descriptor())) descriptor_ = PidDescriptor();
}

bool ProcessHold::hasEnded() const {
  if (descriptor_.isHeld()) return descriptor_.hasEnded();
  if (::kill(pid_, 0) != 0 && errno == ESRCH) return true;
  const auto stat = files_.stat(pid_);
  return stat && (stat->startTicks != startTicks_ || hasEndedThere(*stat));
}

bool ProcessHold::sendSignal(int signal) const {
  if (descriptor_.isHeld()) return descriptor_.sendSignal(signal);
  // Held for this moment: what the comparison finds is what the signal reaches.
  const PidDescriptor moment(pid_);
  const auto stat = moment.isHeld() ? files_.stat(pid_) : std::nullopt;
  return stat && stat->startTicks == startTicks_ && moment.sendSignal(signal);
}

}  // namespace halvorn
