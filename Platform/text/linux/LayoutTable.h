// What the keys of a keyboard type in each of its layouts, by xkbcommon.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "Platform/text/Keyboard.h"

struct xkb_context;
struct xkb_keymap;

namespace halvorn {

class LayoutTable {
 public:
  // Of a description as display servers hand it out. Null for what is none.
  [[nodiscard]] static std::unique_ptr<LayoutTable> parsed(const std::string& description);
  // Takes over the keymap; null for null.
  [[nodiscard]] static std::unique_ptr<LayoutTable> of(xkb_keymap* keymap);
  ~LayoutTable();
  LayoutTable(const LayoutTable&) = delete;
  LayoutTable& operator=(const LayoutTable&) = delete;

  // As Keyboard::translate() answers, in that layout, counted from 0.
  [[nodiscard]] OptionalText typed(std::uint16_t keyCode, KeyModifiers modifiers, std::uint8_t keyboardType,
                                   std::uint32_t layout) const;

 private:
  explicit LayoutTable(xkb_keymap* keymap) : keymap_(keymap) {}

  xkb_keymap* const keymap_;
};

// What goes wrong in it is answered, not printed. The caller unreferences it; null when there is no memory.
[[nodiscard]] xkb_context* silentContext();

}  // namespace halvorn
