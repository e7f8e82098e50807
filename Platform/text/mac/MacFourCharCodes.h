// Four-character codes, read and written by the system's type services.
#pragma once

#include "Platform/text/FourCharCodes.h"

namespace halvorn {

class MacFourCharCodes : public FourCharCodes {
 public:
  [[nodiscard]] FourCharCode codeOf(const Text& text) const override;
  // "" when the system makes no text of it.
  [[nodiscard]] Text textOf(FourCharCode code) const override;
};

}  // namespace halvorn
