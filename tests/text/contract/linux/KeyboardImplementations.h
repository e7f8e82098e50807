// What the cases of the contract are asked of on Linux: a keyboard that a test makes up, that of an X server, and that of a
// compositor's seat.
#pragma once

#include <gtest/gtest.h>

#include <optional>
#include <string>

#include "Platform/session/linux/wayland/SeatKeyboard.h"
#include "Platform/text/linux/XkbKeyboard.h"
#include "tests/fakes/FakeKeyboard.h"
#include "tests/support/Desktop.h"

namespace halvorn {

class FakeKeys {
 public:
  FakeKeys() {
    keyboard_.keys = {{{0x00, 0}, "a"}, {{0x00, KeyModifier::shift}, "A"}, {{0x7E, 0}, ""}, {{0x31, 0}, " "}};
  }
  static std::optional<std::string> missing() { return std::nullopt; }
  Keyboard& keyboard() { return keyboard_; }

 private:
  FakeKeyboard keyboard_;
};

class RealKeys {
 public:
  static std::optional<std::string> missing() { return Desktop::missing(kParts); }
  Keyboard& keyboard() { return keyboard_; }

 private:
  static constexpr DesktopParts kParts{.windowManager = false, .bus = false};
  Desktop desktop_{kParts};
  XkbKeyboard keyboard_{desktop_.displayName()};
};

class SeatKeys {
 public:
  static std::optional<std::string> missing() { return Desktop::missing(kParts); }
  Keyboard& keyboard() { return keyboard_; }

 private:
  static constexpr DesktopParts kParts{.compositor = Compositor::KWin};
  Desktop desktop_{kParts};
  SeatKeyboard keyboard_{desktop_.waylandSocket()};
};

using AllKeys = testing::Types<FakeKeys, RealKeys, SeatKeys>;

}  // namespace halvorn
