// The keyboard by the system's text input sources.
#pragma once

#include "Platform/text/Keyboard.h"

namespace halvorn {

class MacKeyboard : public Keyboard {
 public:
  [[nodiscard]] std::uint32_t type() const override;
  [[nodiscard]] OptionalText translate(std::uint16_t keyCode, KeyModifiers modifiers,
                                       std::uint8_t keyboardType) const override;
};

}  // namespace halvorn
