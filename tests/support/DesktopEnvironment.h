// The environment of a test's desktop, for adapters that run in the test program itself.
#pragma once

#include "Platform/session/linux/Environment.h"
#include "tests/support/Desktop.h"

namespace halvorn {

[[nodiscard]] inline Environment environmentOf(const Desktop& desktop) {
  Environment::Variables variables;
  for (const std::string& entry : desktop.environment())
    variables[entry.substr(0, entry.find('='))] = entry.substr(entry.find('=') + 1);
  return Environment(variables);
}

}  // namespace halvorn
