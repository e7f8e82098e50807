// Nothing is known of who started this program.
#pragma once

#include "Platform/processes/LaunchContext.h"

namespace halvorn {

class NullLaunchContext : public LaunchContext {
 public:
  std::optional<PropertyDictionary> launcherInformation() const override { return std::nullopt; }
};

}  // namespace halvorn
