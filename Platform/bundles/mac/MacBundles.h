// Application bundles, as the system's bundle class reads them.
#pragma once

#include "Platform/bundles/Bundles.h"

namespace halvorn {

class MacBundles : public Bundles {
 public:
  Text mainBundlePath() const override;
  std::optional<PropertyDictionary> infoDictionary(const Text& bundlePath) const override;
  OptionalText pathForResource(const Text& bundlePath, const Text& name, const Text& type) const override;
  std::vector<Text> resourcePaths(const Text& bundlePath) const override;
  OptionalText executablePath(const Text& bundlePath) const override;
  std::optional<PropertyDictionary> dictionaryAtPath(const Text& path) const override;
};

}  // namespace halvorn
