// A desktop without appearances.
#pragma once

#include "Platform/color/Appearances.h"

namespace halvorn {

class NullAppearances : public Appearances {
 public:
  AppearancePointer currentAppearance() const override { return nullptr; }
  AppearancePointer effectiveAppearance() const override { return nullptr; }
};

}  // namespace halvorn
