// Keyboard, answered with the layouts that a compositor hands out for its seat.
#pragma once

#include <memory>
#include <string>

#include "Platform/text/Keyboard.h"

namespace halvorn {

class SeatKeyboard : public Keyboard {
 public:
  // The path as waylandSocketPath() tells it; connects now. Without a compositor no key can be translated.
  explicit SeatKeyboard(const std::string& socketPath);
  ~SeatKeyboard() override;
  SeatKeyboard(const SeatKeyboard&) = delete;
  SeatKeyboard& operator=(const SeatKeyboard&) = delete;

  // Whether the seat has a keyboard just now, and the compositor answers.
  [[nodiscard]] bool hasLayout() const;
  // Always ANSI: a compositor does not tell the form of its keyboard.
  [[nodiscard]] std::uint32_t type() const override { return KeyboardTypes::ansi; }
  // In the first of the layouts: which of several is in use is told to the program alone that has the keyboard.
  [[nodiscard]] OptionalText translate(std::uint16_t keyCode, KeyModifiers modifiers,
                                       std::uint8_t keyboardType) const override;

 private:
  class Seat;

  const std::unique_ptr<Seat> seat_;
};

}  // namespace halvorn
