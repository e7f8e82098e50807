// Keyboard, answered by xkbcommon with the layout of an X display.
#pragma once

#include <memory>
#include <string>

#include "Platform/text/Keyboard.h"

namespace halvorn {

class XkbKeyboard : public Keyboard {
 public:
  // By the name of the display, ":0"; the one of the environment for "". Without a
  // display no key can be translated.
  explicit XkbKeyboard(const std::string& display = "");
  ~XkbKeyboard() override;
  XkbKeyboard(const XkbKeyboard&) = delete;
  XkbKeyboard& operator=(const XkbKeyboard&) = delete;

  // Always ANSI: a display does not tell the form of its keyboard.
  [[nodiscard]] std::uint32_t type() const override { return KeyboardTypes::ansi; }
  [[nodiscard]] OptionalText translate(std::uint16_t keyCode, KeyModifiers modifiers,
                                       std::uint8_t keyboardType) const override;

 private:
  struct Connection;
  std::unique_ptr<Connection> connection_;
};

}  // namespace halvorn
