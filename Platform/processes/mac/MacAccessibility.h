// Watching other applications by the system's Accessibility functions.
#pragma once

#include "Platform/processes/Accessibility.h"

namespace halvorn {

class MacAccessibility : public Accessibility {
 public:
  AccessibilityElementPointer createApplicationElement(ProcessSerialNumber number) override;
  std::unique_ptr<AccessibilityObserver> createObserver(ProcessSerialNumber number,
                                                        Callback callback) override;
};

}  // namespace halvorn
