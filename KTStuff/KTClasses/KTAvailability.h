// What the running system has.
#pragma once

#include "Platform/session/SystemFacts.h"

namespace halvorn {

// Appearances came with 10.14, whose first release has this version of the framework. Thread: any.
[[nodiscard]] inline bool hasAppearances(const SystemFacts& system) {
  constexpr double firstWithAppearances = 1639.0;
  return system.frameworkVersion() >= firstWithAppearances;
}

}  // namespace halvorn
