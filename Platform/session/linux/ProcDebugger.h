// Debuggers, as the process table shows them.
#pragma once

#include <string>

#include "Platform/session/Debugger.h"

namespace halvorn {

class ProcDebugger : public Debugger {
 public:
  explicit ProcDebugger(const std::string& statusFile = "/proc/self/status");

  // True while any process traces this one: debuggers do, and tools that list system calls.
  bool isAttached() const override;

 private:
  std::string statusFile_;
};

}  // namespace halvorn
