// The Trash of the person who asked.
#pragma once

#include <vector>

#include "Core/Text.h"

namespace halvorn {

class Trash {
 public:
  virtual ~Trash() = default;

  // Moves the named items of the folder to the Trash, where the person can see and restore them. False when
  // any of them could not be moved; such an item stays where it was, untouched. Thread: any.
  [[nodiscard]] virtual bool recycle(const Text& sourceFolder, const std::vector<Text>& names) = 0;
};

}  // namespace halvorn
