// Nothing is known of items on disk.
#pragma once

#include "Platform/bundles/ApplicationItems.h"

namespace halvorn {

class NullApplicationItems : public ApplicationItems {
 public:
  std::optional<ApplicationItemFlags> flags(const Text&) const override { return std::nullopt; }
  std::optional<std::string> resource(const Text&, FourCharCode, std::int16_t) const override {
    return std::nullopt;
  }
};

}  // namespace halvorn
