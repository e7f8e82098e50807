#include "Platform/session/linux/ProcDebugger.h"

#include <fstream>
#include <string_view>

namespace halvorn {

ProcDebugger::ProcDebugger(const std::string& statusFile) : statusFile_(statusFile) {}

bool ProcDebugger::isAttached() const {
  constexpr std::string_view key = "TracerPid:";
  std::ifstream file(statusFile_);
  for (std::string line; std::getline(file, line);) {
    if (line.starts_with(key)) return line.find_first_not_of(" \t0", key.size()) != std::string::npos;
  }
  return false;
}

}  // namespace halvorn
