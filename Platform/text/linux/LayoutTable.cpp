#include "Platform/text/linux/LayoutTable.h"

#include <xkbcommon/xkbcommon.h>

#include "Platform/text/linux/VirtualKeyCodes.h"

namespace halvorn {
namespace {

struct Release {
  void operator()(xkb_context* context) const { xkb_context_unref(context); }
  void operator()(xkb_state* state) const { xkb_state_unref(state); }
};

// Display servers count keys from 8 on.
constexpr xkb_keycode_t kFirstKey = 8;

xkb_mod_mask_t maskOf(xkb_keymap* keymap, const char* modifier) {
  const xkb_mod_index_t index = xkb_keymap_mod_get_index(keymap, modifier);
  return index == XKB_MOD_INVALID ? 0 : xkb_mod_mask_t{1} << index;
}

// The command key changes no text, so it has no counterpart.
xkb_mod_mask_t maskFor(xkb_keymap* keymap, KeyModifiers modifiers) {
  // The keypad always types its digits.
  xkb_mod_mask_t mask = maskOf(keymap, XKB_MOD_NAME_NUM);
  if ((modifiers & KeyModifier::shift) != 0) mask |= maskOf(keymap, XKB_MOD_NAME_SHIFT);
  if ((modifiers & KeyModifier::capsLock) != 0) mask |= maskOf(keymap, XKB_MOD_NAME_CAPS);
  if ((modifiers & KeyModifier::option) != 0) mask |= maskOf(keymap, "Mod5");
  if ((modifiers & KeyModifier::control) != 0) mask |= maskOf(keymap, XKB_MOD_NAME_CTRL);
  return mask;
}

}  // namespace

xkb_context* silentContext() {
  xkb_context* const context = xkb_context_new(XKB_CONTEXT_NO_FLAGS);
  if (context != nullptr) xkb_context_set_log_level(context, XKB_LOG_LEVEL_CRITICAL);
  return context;
}

std::unique_ptr<LayoutTable> LayoutTable::parsed(const std::string& description) {
  const std::unique_ptr<xkb_context, Release> context(silentContext());
  if (!context) return nullptr;
  return of(xkb_keymap_new_from_string(context.get(), description.c_str(), XKB_KEYMAP_FORMAT_TEXT_V1,
                                       XKB_KEYMAP_COMPILE_NO_FLAGS));
}

std::unique_ptr<LayoutTable> LayoutTable::of(xkb_keymap* keymap) {
  return keymap != nullptr ? std::unique_ptr<LayoutTable>(new LayoutTable(keymap)) : nullptr;
}

LayoutTable::~LayoutTable() { xkb_keymap_unref(keymap_); }

OptionalText LayoutTable::typed(std::uint16_t keyCode, KeyModifiers modifiers, std::uint8_t keyboardType,
                                std::uint32_t layout) const {
  const auto key = kernelKeyCode(keyCode, keyboardType);
  const std::unique_ptr<xkb_state, Release> state(xkb_state_new(keymap_));
  if (!key || !state) return std::nullopt;
  xkb_state_update_mask(state.get(), maskFor(keymap_, modifiers), 0, 0, 0, 0, layout);
  const char32_t scalar = xkb_state_key_get_utf32(state.get(), *key + kFirstKey);
  return scalar != 0 ? Text::fromScalar(scalar) : Text();
}

}  // namespace halvorn
