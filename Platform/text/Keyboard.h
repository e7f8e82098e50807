// What the keys of the keyboard type in the layout of the moment.
//
// Thread: the one the display connection belongs to.
#pragma once

#include <cstdint>
#include <optional>

#include "Core/Text.h"

namespace halvorn {

// The form of the keyboard, which decides where two keys lie.
namespace KeyboardTypes {
constexpr std::uint32_t ansi = 40;  // as in America
constexpr std::uint32_t iso = 41;   // as in Europe, with one key more
}  // namespace KeyboardTypes

// A set of these bits.
using KeyModifiers = std::uint32_t;
namespace KeyModifier {
constexpr KeyModifiers command = 0x01;   // the key for commands
constexpr KeyModifiers shift = 0x02;     // either shift key
constexpr KeyModifiers capsLock = 0x04;  // while it is on
constexpr KeyModifiers option = 0x08;    // the key for more characters
constexpr KeyModifiers control = 0x10;   // either control key
}  // namespace KeyModifier

class Keyboard {
 public:
  virtual ~Keyboard() = default;

  // The type of the keyboard in use.
  [[nodiscard]] virtual std::uint32_t type() const = 0;
  // The text of one key, by its virtual key code, pressed on its own: no dead key comes before it. "" for a
  // key that types nothing by itself. nullopt: no layout can be had, or no such key.
  [[nodiscard]] virtual OptionalText translate(std::uint16_t keyCode, KeyModifiers modifiers,
                                               std::uint8_t keyboardType) const = 0;
};

}  // namespace halvorn
