// The keyboard of a Linux session: its compositor's, or the X server's.
#pragma once

#include "Platform/session/linux/Environment.h"
#include "Platform/session/linux/wayland/SeatKeyboard.h"
#include "Platform/text/linux/XkbKeyboard.h"

namespace halvorn {

class LinuxKeyboard : public Keyboard {
 public:
  // Connects now.
  explicit LinuxKeyboard(const Environment& environment);

  [[nodiscard]] std::uint32_t type() const override { return KeyboardTypes::ansi; }
  // As the compositor says; where it has no keyboard, or does not answer, as the X server does.
  [[nodiscard]] OptionalText translate(std::uint16_t keyCode, KeyModifiers modifiers,
                                       std::uint8_t keyboardType) const override;

 private:
  const SeatKeyboard seat_;
  const XkbKeyboard display_;
};

}  // namespace halvorn
