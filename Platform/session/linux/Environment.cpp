#include "Platform/session/linux/Environment.h"

#include <unistd.h>

namespace halvorn {

Environment Environment::ofThisProcess() {
  Variables variables;
  for (char** entry = environ; entry != nullptr && *entry != nullptr; ++entry) {
    const std::string text = *entry;
    const std::size_t equals = text.find('=');
    if (equals != std::string::npos && equals > 0)
      variables.emplace(text.substr(0, equals), text.substr(equals + 1));
  }
  return Environment(std::move(variables));
}

std::optional<std::string> Environment::value(const std::string& name) const {
  const auto found = variables_.find(name);
  if (found == variables_.end() || found->second.empty()) return std::nullopt;
  return found->second;
}

}  // namespace halvorn
