// A keyboard with the few keys that a test gives it.
#pragma once

#include <map>
#include <tuple>
#include <utility>
#include <vector>

#include "Platform/text/Keyboard.h"

namespace halvorn {

class FakeKeyboard : public Keyboard {
 public:
  std::uint32_t type() const override { return keyboardType; }
  OptionalText translate(std::uint16_t keyCode, KeyModifiers modifiers,
                         std::uint8_t typeOfKeyboard) const override {
    asked.push_back({keyCode, modifiers, typeOfKeyboard});
    const auto found = keys.find({keyCode, modifiers});
    return found == keys.end() ? std::nullopt : OptionalText(found->second);
  }

  std::uint32_t keyboardType = KeyboardTypes::ansi;
  std::map<std::pair<std::uint16_t, KeyModifiers>, Text> keys;
  mutable std::vector<std::tuple<std::uint16_t, KeyModifiers, std::uint8_t>> asked;
};

}  // namespace halvorn
