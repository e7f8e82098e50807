// Programs of the system that do a part of the work.
#pragma once

#include <string>
#include <vector>

namespace halvorn {

struct ProgramEnd {
  int status = -1;     // -1: it could not be started, or was ended by a signal
  std::string output;  // standard output and standard error
};

// Searched in PATH when its name has no slash. The entries are put into the environment. Waits for the end.
[[nodiscard]] ProgramEnd runProgram(const std::vector<std::string>& words,
                                    const std::vector<std::string>& environment = {});
[[nodiscard]] bool isInPath(const std::string& program);

}  // namespace halvorn
