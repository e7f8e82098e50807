// The certainty that a process is still the one it was. A descriptor of the process gives it; while few
// descriptors are left, its start time, which is compared each time.
// Why: docs/decisions/012-process-identity.md
#pragma once

#include <sys/types.h>

#include <cstdint>

#include "Platform/processes/linux/proc/PidDescriptor.h"

namespace halvorn {

class ProcFiles;

// Thread: any.
class ProcessHold {
 public:
  // So many descriptors stay free for everything else that this program does.
  static constexpr int kLeftForOthers = 32;

  // Of the process that started at that tick. The descriptor need not be held, and is given back where too
  // few are left. The files must outlive this object.
  ProcessHold(const ProcFiles& files, pid_t pid, std::uint64_t startTicks, PidDescriptor descriptor);

  [[nodiscard]] pid_t pid() const { return pid_; }
  [[nodiscard]] std::uint64_t startTicks() const { return startTicks_; }
  // As PidDescriptor. A process that cannot be looked at, for want of any descriptor, counts as running.
  [[nodiscard]] bool hasEnded() const;
  // As PidDescriptor. False also when the process cannot be told from another one now.
  bool sendSignal(int signal) const;
  // -1 when none is held.
  [[nodiscard]] int descriptor() const { return descriptor_.descriptor(); }

 private:
  const ProcFiles& files_;
  const pid_t pid_;
  const std::uint64_t startTicks_;
  PidDescriptor descriptor_;
};

}  // namespace halvorn
