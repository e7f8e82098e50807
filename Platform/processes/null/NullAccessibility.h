// No application can be watched.
#pragma once

#include "Platform/processes/Accessibility.h"

namespace halvorn {

class NullAccessibility : public Accessibility {
 public:
  AccessibilityElementPointer createApplicationElement(std::int32_t) override { return nullptr; }
  std::unique_ptr<AccessibilityObserver> createObserver(std::int32_t, Callback) override { return nullptr; }
};

}  // namespace halvorn
