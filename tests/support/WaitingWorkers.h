// Threads that a test waits for where the object ends; what their tasks use is declared before it.
#pragma once

#include "Platform/running/posix/PosixWorkers.h"

namespace halvorn {

class WaitingWorkers : public PosixWorkers {
 public:
  WaitingWorkers() = default;
  ~WaitingWorkers() override { finish(); }
  WaitingWorkers(const WaitingWorkers&) = delete;
  WaitingWorkers& operator=(const WaitingWorkers&) = delete;
};

}  // namespace halvorn
