// A hold on one process. The process id may be given to another process later; this
// stays with the one it was made for.
#pragma once

#include <sys/types.h>

#include "Platform/running/posix/FileDescriptor.h"

namespace halvorn {

// Thread: any.
class PidDescriptor {
 public:
  PidDescriptor() = default;  // holds nobody
  // Not held when there is no such process, or no descriptor is free.
  explicit PidDescriptor(pid_t pid);

  [[nodiscard]] bool isHeld() const { return descriptor_.isOpen(); }
  // A zombie has ended; a process whose first thread is gone and others work has not.
  [[nodiscard]] bool hasEnded() const;
  // False when the process has ended or may not be signalled.
  bool sendSignal(int signal) const;
  // Readable once the process has ended.
  [[nodiscard]] int descriptor() const { return descriptor_.get(); }

 private:
  FileDescriptor descriptor_;
};

}  // namespace halvorn
