// The person's settings, as the system's defaults know them: the command line's stand above the program's own.
#pragma once

#include "Platform/bundles/Defaults.h"

namespace halvorn {

class MacDefaults : public Defaults {
 public:
  using Defaults::objectForKey;
  std::optional<PropertyValue> objectForKey(const Text& key) const override;
  std::optional<PropertyValue> objectForKey(const Text& key, const Text& domain) const override;
};

}  // namespace halvorn
