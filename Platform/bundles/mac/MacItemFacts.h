// Items on disk, as Launch Services, the Resource Manager and the Alias Manager know them.
#pragma once

#include "Platform/bundles/ItemFacts.h"

namespace halvorn {

class MacItemFacts : public ItemFacts {
 public:
  std::optional<ApplicationItemFlags> flags(const Text& path) const override;
  std::optional<std::string> resource(const Text& path, FourCharCode type, std::int16_t id) const override;
  OptionalText aliasTarget(const Text& path) const override;
};

}  // namespace halvorn
