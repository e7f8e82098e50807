// No settings.
#pragma once

#include "Platform/bundles/Defaults.h"

namespace halvorn {

class NullDefaults : public Defaults {
 public:
  std::optional<PropertyValue> objectForKey(const Text&) const override { return std::nullopt; }
  std::optional<PropertyValue> objectForKey(const Text&, const Text&) const override { return std::nullopt; }
};

}  // namespace halvorn
