#include "Platform/session/linux/LinuxKeyboard.h"

#include "Platform/session/linux/WaylandSession.h"

namespace halvorn {

LinuxKeyboard::LinuxKeyboard(const Environment& environment)
    : seat_(waylandSocketPath(environment)), display_(environment.value("DISPLAY").value_or("")) {}

OptionalText LinuxKeyboard::translate(std::uint16_t keyCode, KeyModifiers modifiers,
                                      std::uint8_t keyboardType) const {
  return (seat_.hasLayout() ? static_cast<const Keyboard&>(seat_) : display_)
      .translate(keyCode, modifiers, keyboardType);
}

}  // namespace halvorn
