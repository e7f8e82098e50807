// What another application's user interface is made of, as a value that can be handed around.
#pragma once

#include <memory>

#include "Core/Text.h"

namespace halvorn {

// An element of a user interface: an application, a window, a button. It may be
// gone by the time it is looked at.
class AccessibilityElement {
 public:
  virtual ~AccessibilityElement() = default;
  // What the system calls it; equal for the same element.
  [[nodiscard]] virtual Text reference() const = 0;
};
using AccessibilityElementPointer = std::shared_ptr<const AccessibilityElement>;  // shared; null for none

}  // namespace halvorn
