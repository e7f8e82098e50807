// Facts about Unicode characters and comparisons that need them.
#pragma once

#include "Core/Ordering.h"
#include "Core/Text.h"

namespace halvorn {

class Unicode {
 public:
  virtual ~Unicode() = default;
  // General category L* or M*. Thread: any, as all of these.
  [[nodiscard]] virtual bool isLetter(char32_t scalar) const = 0;
  // Compares without regard to case (full case folding), else literally.
  [[nodiscard]] virtual Ordering compareCaseInsensitive(const Text& a, const Text& b) const = 0;
};

}  // namespace halvorn
