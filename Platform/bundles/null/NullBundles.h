// No bundle anywhere, not even around this program.
#pragma once

#include "Platform/bundles/Bundles.h"

namespace halvorn {

class NullBundles : public Bundles {
 public:
  Text mainBundlePath() const override { return "/"; }
  std::optional<PropertyDictionary> infoDictionary(const Text&) const override { return std::nullopt; }
  OptionalText pathForResource(const Text&, const Text&, const Text&) const override { return std::nullopt; }
  std::vector<Text> resourcePaths(const Text&) const override { return {}; }
  OptionalText executablePath(const Text&) const override { return std::nullopt; }
};

}  // namespace halvorn
