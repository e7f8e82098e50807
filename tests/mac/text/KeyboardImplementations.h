// What the cases of the contract are asked of on macOS: the adapter, with a layout that a test makes up.
#pragma once

#include <gtest/gtest.h>

#include <optional>
#include <string>

#include "Platform/text/mac/MacKeyboard.h"
#include "tests/mac/frameworks/FakeMac.h"

namespace halvorn {

class MacKeys {
 public:
  MacKeys() {
    fakemac::reset();
    fakemac::state().keys = {
        {{0x00, 0}, u"a"}, {{0x00, KeyModifier::shift}, u"A"}, {{0x7E, 0}, u""}, {{0x31, 0}, u" "}};
  }
  static std::optional<std::string> missing() { return std::nullopt; }
  Keyboard& keyboard() { return keyboard_; }

 private:
  MacKeyboard keyboard_;
};
using AllKeys = testing::Types<MacKeys>;

}  // namespace halvorn
