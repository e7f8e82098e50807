// Debuggers, as the process table shows them.
#pragma once

#include <string>

namespace halvorn {

class ProcDebugger {
 public:
  explicit ProcDebugger(const std::string& statusFile = "/proc/self/status");

  // True while any process traces this one: debuggers do, and tools that list system calls.
  [[nodiscard]] bool isAttached() const;

 private:
  std::string statusFile_;
};

}  // namespace halvorn
