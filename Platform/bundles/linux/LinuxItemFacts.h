// Applications on a Linux disk: folders that are bundles, with programs that can start here.
#pragma once

#include "Platform/bundles/ItemFacts.h"

namespace halvorn {

class Bundles;

class LinuxItemFacts : public ItemFacts {
 public:
  explicit LinuxItemFacts(const Bundles& bundles) : bundles_(bundles) {}

  std::optional<ApplicationItemFlags> flags(const Text& path) const override;
  std::optional<std::string> resource(const Text& path, FourCharCode type, std::int16_t id) const override;
  OptionalText aliasTarget(const Text& path) const override;

 private:
  const Bundles& bundles_;
};

}  // namespace halvorn
