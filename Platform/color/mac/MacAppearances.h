// The appearances of the application and of the view that is drawn.
#pragma once

#include "Platform/color/Appearances.h"

namespace halvorn {

class MacAppearances : public Appearances {
 public:
  [[nodiscard]] AppearancePointer currentAppearance() const override;
  [[nodiscard]] AppearancePointer effectiveAppearance() const override;
};

}  // namespace halvorn
