// Login items that a test writes down.
#pragma once

#include "Platform/bundles/LoginItems.h"

namespace halvorn {

class FakeLoginItems : public LoginItems {
 public:
  std::optional<std::vector<OptionalText>> snapshot() const override { return items; }

  std::optional<std::vector<OptionalText>> items = std::vector<OptionalText>{};
};

}  // namespace halvorn
