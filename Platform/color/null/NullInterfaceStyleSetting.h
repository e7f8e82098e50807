// The light style, for good.
#pragma once

#include "Platform/color/InterfaceStyleSetting.h"

namespace halvorn {

class NullInterfaceStyleSetting : public InterfaceStyleSetting {
 public:
  OptionalText current() override { return std::nullopt; }
  void installChangeHandler(std::function<void()>) override {}
};

}  // namespace halvorn
