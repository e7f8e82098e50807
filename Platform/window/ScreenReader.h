// Says things to people who do not see the window.
#pragma once

#include "Core/Text.h"

namespace halvorn {

class ScreenReader {
 public:
  virtual ~ScreenReader() = default;
  // Has the text spoken when a screen reader runs; otherwise nothing. Thread: main.
  virtual void announce(const Text& text) = 0;
};

}  // namespace halvorn
