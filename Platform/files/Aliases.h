// Files that stand for other files.
#pragma once

#include "Core/Text.h"

namespace halvorn {

class Aliases {
 public:
  virtual ~Aliases() = default;
  // Where the alias at the path leads in the end, through any number of further aliases. nullopt when the
  // item is no alias, does not exist, or leads nowhere. Thread: any.
  [[nodiscard]] virtual OptionalText targetOf(const Text& path) const = 0;
};

}  // namespace halvorn
