// By whom this program was started, as the Process Manager remembers it.
#pragma once

#include "Platform/processes/LaunchContext.h"

namespace halvorn {

class MacLaunchContext : public LaunchContext {
 public:
  [[nodiscard]] std::optional<PropertyDictionary> launcherInformation() const override;
};

}  // namespace halvorn
