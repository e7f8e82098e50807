// Announcements for people who hear the window.
#pragma once

#include "Platform/window/ScreenReader.h"

namespace halvorn {

class MacScreenReader : public ScreenReader {
 public:
  void announce(const Text& text) override;
};

}  // namespace halvorn
