// No login items.
#pragma once

#include "Platform/bundles/LoginItems.h"

namespace halvorn {

class NullLoginItems : public LoginItems {
 public:
  std::optional<std::vector<OptionalText>> snapshot() const override { return std::nullopt; }
};

}  // namespace halvorn
