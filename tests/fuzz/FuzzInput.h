// The bytes of one fuzz run, taken apart into what a target needs.
#pragma once

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include "Core/Text.h"

namespace halvorn {

class FuzzInput {
 public:
  FuzzInput(const std::uint8_t* data, std::size_t size) : rest_(reinterpret_cast<const char*>(data), size) {}

  [[nodiscard]] std::uint8_t byte() { return take(1).empty() ? 0 : static_cast<std::uint8_t>(last_[0]); }
  // Up to the next byte 0xFF, which no UTF-8 holds, or the end.
  [[nodiscard]] std::string_view bytes() {
    const std::string_view part = take(rest_.find('\xFF'));
    (void)take(1);
    return part;
  }
  // The same as a text: UTF-8, or two bytes a unit when it begins with a tilde,
  // so that every unit can be made.
  [[nodiscard]] Text text() {
    const std::string_view part = bytes();
    if (!part.starts_with('~')) return Text(part);
    std::u16string units;
    for (std::size_t i = 1; i + 1 < part.size(); i += 2) {
      units.push_back(static_cast<char16_t>(static_cast<std::uint8_t>(part[i]) << 8 |
                                            static_cast<std::uint8_t>(part[i + 1])));
    }
    return Text(std::move(units));
  }
  [[nodiscard]] std::string_view rest() { return take(rest_.size()); }

 private:
  std::string_view take(std::size_t count) {
    last_ = rest_.substr(0, count);
    rest_.remove_prefix(last_.size());
    return last_;
  }

  std::string_view rest_;
  std::string_view last_;
};

// What must hold for every input; a run that breaks it is kept as a crash.
inline void require(bool isTrue, const char* what) {
  if (isTrue) return;
  std::fprintf(stderr, "broken: %s\n", what);
  std::abort();
}

// Looks at the units: neighbours that stand for bytes which are not UTF-8 may be UTF-8 when put together.
inline bool hasLoneSurrogate(const Text& text) {
  const std::u16string_view units = text.units();
  for (std::size_t i = 0; i < units.size(); ++i) {
    const bool isHigh = units[i] >= 0xD800 && units[i] < 0xDC00;
    const bool isLow = units[i] >= 0xDC00 && units[i] < 0xE000;
    const bool isPair = isHigh && i + 1 < units.size() && units[i + 1] >= 0xDC00 && units[i + 1] < 0xE000;
    if (isPair) {
      ++i;
    } else if (isHigh || isLow) {
      return true;
    }
  }
  return false;
}

}  // namespace halvorn
