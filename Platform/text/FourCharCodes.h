// Four-character codes (signatures) as texts, by the system's own rules where it has some.
//
// Thread: any. Fails: nothing here can.
#pragma once

#include "Core/FourCharCode.h"
#include "Core/Text.h"

namespace halvorn {

class FourCharCodes {
 public:
  virtual ~FourCharCodes() = default;
  // 0 for a text that is no code.
  [[nodiscard]] virtual FourCharCode codeOf(const Text& text) const = 0;
  // Four characters.
  [[nodiscard]] virtual Text textOf(FourCharCode code) const = 0;
};

}  // namespace halvorn
