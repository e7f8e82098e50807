// The Trash of the person who asked.
#pragma once

#include <optional>
#include <vector>

#include "Core/Text.h"
#include "Platform/files/FileFailure.h"

namespace halvorn {

class Trash {
 public:
  virtual ~Trash() = default;

  // Moves the named items of the folder to the Trash, where the person can see and restore them.
  // Fails: when any of them could not be moved, and answers why the first was not; such an item stays
  // where it was, untouched. Thread: any.
  [[nodiscard]] virtual std::optional<FileFailure> recycle(const Text& sourceFolder,
                                                           const std::vector<Text>& names) = 0;
};

}  // namespace halvorn
