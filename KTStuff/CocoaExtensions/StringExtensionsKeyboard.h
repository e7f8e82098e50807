// StringExtensions, keyboard: what a key types.
#pragma once

#include <cstdint>

#include "Core/Text.h"
#include "Platform/text/Keyboard.h"

namespace halvorn::StringExtensions {

// What the key with that virtual key code types in the layout of the moment, pressed alone: at most 4 units.
// "" for a key that types nothing, a dead key among them; "<ERR>" when the platform has no layout, no such
// key, or more text than that. The modifiers are handed on untouched.
[[nodiscard]] Text stringWithVirtualKeyCode(std::uint16_t keyCode, KeyModifiers modifiers,
                                            const Keyboard& keyboard);

}  // namespace halvorn::StringExtensions
