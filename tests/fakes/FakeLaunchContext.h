// A launcher that a test names.
#pragma once

#include "Platform/processes/LaunchContext.h"

namespace halvorn {

class FakeLaunchContext : public LaunchContext {
 public:
  std::optional<PropertyDictionary> launcherInformation() const override { return launcher; }
  std::optional<PropertyDictionary> launcher;
};

}  // namespace halvorn
