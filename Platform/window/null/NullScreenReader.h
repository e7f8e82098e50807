// Nobody listens.
#pragma once

#include "Platform/window/ScreenReader.h"

namespace halvorn {

class NullScreenReader : public ScreenReader {
 public:
  void announce(const Text&) override {}
};

}  // namespace halvorn
