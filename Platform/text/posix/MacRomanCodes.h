// Codes where the system has none: four characters of Mac OS Roman, as the core reads them.
#pragma once

#include "Platform/text/FourCharCodes.h"

namespace halvorn {

class MacRomanCodes : public FourCharCodes {
 public:
  [[nodiscard]] FourCharCode codeOf(const Text& text) const override { return fourCharCodeFromText(text); }
  [[nodiscard]] Text textOf(FourCharCode code) const override { return textFromFourCharCode(code); }
};

}  // namespace halvorn
