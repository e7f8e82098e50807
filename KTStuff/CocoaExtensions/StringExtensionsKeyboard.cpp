#include "KTStuff/CocoaExtensions/StringExtensionsKeyboard.h"

namespace halvorn::StringExtensions {

Text stringWithVirtualKeyCode(std::uint16_t keyCode, KeyModifiers modifiers, const Keyboard& keyboard) {
  constexpr std::size_t kMostUnits = 4;
  const auto keyboardType = static_cast<std::uint8_t>(keyboard.type() & 0xFF);
  const OptionalText typed = keyboard.translate(keyCode, modifiers, keyboardType);
  return typed && typed->length() <= kMostUnits ? *typed : Text("<ERR>");
}

}  // namespace halvorn::StringExtensions
