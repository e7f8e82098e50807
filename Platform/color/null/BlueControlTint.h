// The blue tint, for desktops whose controls have no tint of their own choosing.
#pragma once

#include "Platform/color/ControlTint.h"

namespace halvorn {

class BlueControlTint : public ControlTint {
 public:
  int current() const override { return blueControlTint; }
};

}  // namespace halvorn
