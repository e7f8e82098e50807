#include <cstdlib>

#include "Platform/rights/posix/Person.h"

namespace halvorn::DataFolders {

std::string usualIn(const std::string& home) { return home.empty() ? "" : home + "/.local/share"; }

std::string ofTheEnvironment() {
  const char* value = std::getenv("XDG_DATA_HOME");
  return value != nullptr && value[0] == '/' ? value : "";
}

}  // namespace halvorn::DataFolders
