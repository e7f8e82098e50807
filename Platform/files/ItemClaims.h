// That one program at a time works on an item.
#pragma once

#include <functional>

#include "Core/Text.h"

namespace halvorn {

class ItemClaims {
 public:
  // Whose an item is.
  enum class Claim {
    Ours,      // for as long as this program lives, however it ends
    Anothers,  // of a program of the same person, which was told that it is wanted, and heard it
    Unknown,   // nobody can tell, or whoever has it does not answer
  };

  virtual ~ItemClaims() = default;
  // Claims the item at the path, which need not exist, whatever way the path leads there. When the claim is ours,
  // `wanted` is called each time that another program claims the item. Waits a few seconds at most. Thread: main.
  [[nodiscard]] virtual Claim claim(const Text& path, std::function<void()> wanted) = 0;
};

}  // namespace halvorn
