#include "Platform/session/linux/LinuxKeyboard.h"

#include "Platform/session/linux/WaylandSession.h"

namespace halvorn {

LinuxKeyboard::LinuxKeyboard(const Environment& environment)
    : seat_(waylandSocketPath(environment)), display_(environment.value("DISPLAY").value_or("")) {}

OptionalText LinuxKeyboard::translate(std::uint16_t keyCode, KeyModifiers modifiers,
                                      std::uint8_t keyboardType) const {
  OptionalText typed = seat_.translate(keyCode, modifiers, keyboardType);
  if (typed || seat_.hasLayout()) return typed;
  return display_.translate(keyCode, modifiers, keyboardType);
}

}  // namespace halvorn
