// The light style, for good.
#pragma once

#include "Platform/InterfaceStyle.h"

namespace halvorn {

class NullInterfaceStyle : public InterfaceStyle {
 public:
  OptionalText current() override { return std::nullopt; }
  void installChangeHandler(std::function<void()>) override {}
};

}  // namespace halvorn
