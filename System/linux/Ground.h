// What everything stands on: the arguments, the environment, time, the log and files. No library is needed for it.
#pragma once

#include "Platform/files/posix/PosixFileHandles.h"
#include "Platform/files/posix/PosixFileManager.h"
#include "Platform/running/posix/PosixClock.h"
#include "Platform/session/linux/Environment.h"
#include "Platform/session/linux/JournalLog.h"
#include "System/Parts.h"

namespace halvorn {

struct Ground {
  explicit Ground(KTSystem& system);

  const Text programPath;  // links resolved
  const Text programName;
  const Environment environment = Environment::ofThisProcess();
  PosixClock clock;
  const JournalLog log;
  PosixFileManager files;
  const PosixFileHandles fileHandles;

  // The path of a module that is loaded when it is needed.
  [[nodiscard]] Text modulePath(const char* name) const;

 private:
  const Text modulesFolder_;
};

}  // namespace halvorn
