// No file stands for another.
#pragma once

#include "Platform/files/Aliases.h"

namespace halvorn {

class NullAliases : public Aliases {
 public:
  OptionalText targetOf(const Text&) const override { return std::nullopt; }
};

}  // namespace halvorn
