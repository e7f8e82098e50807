#include "Platform/text/linux/VirtualKeyCodes.h"

#include <linux/input-event-codes.h>

#include <iterator>

#include "Platform/text/Keyboard.h"

namespace halvorn {
namespace {

constexpr std::uint8_t kNone = 0;
constexpr std::uint16_t kIsoSection = 0x0A;
constexpr std::uint16_t kGrave = 0x32;

// By virtual key code, eight to a row.
// clang-format off
constexpr std::uint8_t kKeys[] = {
    /* 0x00 */ KEY_A, KEY_S, KEY_D, KEY_F, KEY_H, KEY_G, KEY_Z, KEY_X,
    /* 0x08 */ KEY_C, KEY_V, KEY_102ND, KEY_B, KEY_Q, KEY_W, KEY_E, KEY_R,
    /* 0x10 */ KEY_Y, KEY_T, KEY_1, KEY_2, KEY_3, KEY_4, KEY_6, KEY_5,
    /* 0x18 */ KEY_EQUAL, KEY_9, KEY_7, KEY_MINUS, KEY_8, KEY_0, KEY_RIGHTBRACE, KEY_O,
    /* 0x20 */ KEY_U, KEY_LEFTBRACE, KEY_I, KEY_P, KEY_ENTER, KEY_L, KEY_J, KEY_APOSTROPHE,
    /* 0x28 */ KEY_K, KEY_SEMICOLON, KEY_BACKSLASH, KEY_COMMA, KEY_SLASH, KEY_N, KEY_M, KEY_DOT,
    /* 0x30 */ KEY_TAB, KEY_SPACE, KEY_GRAVE, KEY_BACKSPACE, kNone, KEY_ESC, KEY_RIGHTMETA, KEY_LEFTMETA,
    /* 0x38 */ KEY_LEFTSHIFT, KEY_CAPSLOCK, KEY_LEFTALT, KEY_LEFTCTRL, KEY_RIGHTSHIFT, KEY_RIGHTALT, KEY_RIGHTCTRL, kNone,
    /* 0x40 */ KEY_F17, KEY_KPDOT, kNone, KEY_KPASTERISK, kNone, KEY_KPPLUS, kNone, KEY_NUMLOCK,
    /* 0x48 */ KEY_VOLUMEUP, KEY_VOLUMEDOWN, KEY_MUTE, KEY_KPSLASH, KEY_KPENTER, kNone, KEY_KPMINUS, KEY_F18,
    /* 0x50 */ KEY_F19, KEY_KPEQUAL, KEY_KP0, KEY_KP1, KEY_KP2, KEY_KP3, KEY_KP4, KEY_KP5,
    /* 0x58 */ KEY_KP6, KEY_KP7, KEY_F20, KEY_KP8, KEY_KP9, KEY_YEN, KEY_RO, KEY_KPJPCOMMA,
    /* 0x60 */ KEY_F5, KEY_F6, KEY_F7, KEY_F3, KEY_F8, KEY_F9, KEY_HANJA, KEY_F11,
    /* 0x68 */ KEY_HANGEUL, KEY_F13, KEY_F16, KEY_F14, kNone, KEY_F10, kNone, KEY_F12,
    /* 0x70 */ kNone, KEY_F15, KEY_INSERT, KEY_HOME, KEY_PAGEUP, KEY_DELETE, KEY_F4, KEY_END,
    /* 0x78 */ KEY_F2, KEY_PAGEDOWN, KEY_F1, KEY_LEFT, KEY_RIGHT, KEY_DOWN, KEY_UP, kNone,
};
// clang-format on
static_assert(std::size(kKeys) == 0x80);

}  // namespace

std::optional<std::uint32_t> kernelKeyCode(std::uint16_t virtualKeyCode, std::uint8_t keyboardType) {
  if (virtualKeyCode >= std::size(kKeys)) return std::nullopt;
  const bool isSwapped = keyboardType == KeyboardTypes::iso;
  if (isSwapped && virtualKeyCode == kIsoSection) return KEY_GRAVE;
  if (isSwapped && virtualKeyCode == kGrave) return KEY_102ND;
  const std::uint8_t key = kKeys[virtualKeyCode];
  return key != kNone ? std::optional<std::uint32_t>(key) : std::nullopt;
}

}  // namespace halvorn
