// The fixed virtual key codes and the kernel's key codes. Both name places on the keyboard, not letters.
#pragma once

#include <cstdint>
#include <optional>

namespace halvorn {

// The key as <linux/input-event-codes.h> numbers it; nullopt for a code that no key has. On ISO keyboards the
// key left of the "1" and the one next to the left shift key have each other's code.
[[nodiscard]] std::optional<std::uint32_t> kernelKeyCode(std::uint16_t virtualKeyCode,
                                                         std::uint8_t keyboardType);

}  // namespace halvorn
