// Watching the user interface of other applications.
//
// Thread: main; call-backs arrive on the main thread, from its run loop.
#pragma once

#include <functional>
#include <memory>

#include "Core/AccessibilityElement.h"
#include "Core/Text.h"
#include "Platform/processes/ProcessSource.h"

namespace halvorn {

// Watches one application for the notifications that were added. Destroying it ends all of them.
class AccessibilityObserver {
 public:
  virtual ~AccessibilityObserver() = default;
  // Call-backs come only between these two.
  virtual void addToRunLoop() = 0;
  virtual void removeFromRunLoop() = 0;
  // Watches the element, and what lies in it, for the notification ("AXFocusedWindowChanged"). False when the
  // system does not know that notification or cannot watch that element.
  [[nodiscard]] virtual bool add(const AccessibilityElement& element, const Text& notification) = 0;
  virtual void remove(const AccessibilityElement& element, const Text& notification) = 0;
};

class Accessibility {
 public:
  // The element is null when the system named none.
  using Callback = std::function<void(const AccessibilityElementPointer& element, const Text& notification)>;

  virtual ~Accessibility() = default;
  // Both are null when the application cannot be watched: it is gone, or does not take part.
  [[nodiscard]] virtual AccessibilityElementPointer createApplicationElement(ProcessSerialNumber number) = 0;
  [[nodiscard]] virtual std::unique_ptr<AccessibilityObserver> createObserver(ProcessSerialNumber number,
                                                                              Callback callback) = 0;
};

}  // namespace halvorn
