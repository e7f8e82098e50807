#include "Platform/session/linux/bus/OwnerOfCompositor.h"

#include <cstdlib>
#include <fstream>

namespace halvorn {
namespace {

// What comes behind the name, which may hold blanks and brackets: a letter, then the number of the parent.
std::optional<pid_t> parentOf(pid_t pid) {
  std::ifstream file("/proc/" + std::to_string(pid) + "/stat");
  std::string line;
  std::getline(file, line, '\0');
  const std::size_t end = line.rfind(") ");
  if (end == std::string::npos || line.size() < end + 5) return std::nullopt;
  return static_cast<pid_t>(std::atoi(line.c_str() + end + 4));
}

}  // namespace

std::optional<std::string> compositorWithName(BusConnection& bus, const std::string& name, pid_t listener) {
  const auto owner = bus.ownerOf(name);
  const auto pid = owner ? bus.pidOf(*owner) : std::nullopt;
  const bool isCompositor = pid && (*pid == listener || parentOf(*pid) == listener);
  return isCompositor ? owner : std::nullopt;
}

}  // namespace halvorn
