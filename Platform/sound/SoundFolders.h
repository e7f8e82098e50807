// Where this system keeps sounds, apart from the folders that are searched everywhere.
#pragma once

#include <vector>

#include "Core/Text.h"

namespace halvorn {

class SoundFolders {
 public:
  virtual ~SoundFolders() = default;
  // Absolute, in the order of the search; they need not exist. Thread: any.
  [[nodiscard]] virtual std::vector<Text> additionalSoundFolders() const = 0;
};

}  // namespace halvorn
