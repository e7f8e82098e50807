#include "Platform/text/linux/XkbKeyboard.h"

#include <xcb/xcb.h>
#include <xkbcommon/xkbcommon-x11.h>
#include <xkbcommon/xkbcommon.h>

#include "Platform/text/linux/VirtualKeyCodes.h"

namespace halvorn {
namespace {

struct Closer {
  void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
  void operator()(xkb_context* context) const { xkb_context_unref(context); }
  void operator()(xkb_keymap* keymap) const { xkb_keymap_unref(keymap); }
  void operator()(xkb_state* state) const { xkb_state_unref(state); }
};
using Context = std::unique_ptr<xkb_context, Closer>;
using Keymap = std::unique_ptr<xkb_keymap, Closer>;
using State = std::unique_ptr<xkb_state, Closer>;

// X counts keys from 8 on.
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

struct XkbKeyboard::Connection {
  std::unique_ptr<xcb_connection_t, Closer> display;
  Context context;
  std::int32_t device = -1;
};

XkbKeyboard::XkbKeyboard(const std::string& display) {
  auto connection = std::make_unique<Connection>();
  connection->display.reset(xcb_connect(display.empty() ? nullptr : display.c_str(), nullptr));
  if (xcb_connection_has_error(connection->display.get()) != 0) return;
  const int hasExtension = xkb_x11_setup_xkb_extension(
      connection->display.get(), XKB_X11_MIN_MAJOR_XKB_VERSION, XKB_X11_MIN_MINOR_XKB_VERSION,
      XKB_X11_SETUP_XKB_EXTENSION_NO_FLAGS, nullptr, nullptr, nullptr, nullptr);
  connection->context.reset(xkb_context_new(XKB_CONTEXT_NO_FLAGS));
  if (hasExtension == 0 || !connection->context) return;
  // What goes wrong is answered, not printed.
  xkb_context_set_log_level(connection->context.get(), XKB_LOG_LEVEL_CRITICAL);
  connection->device = xkb_x11_get_core_keyboard_device_id(connection->display.get());
  if (connection->device >= 0) connection_ = std::move(connection);
}

XkbKeyboard::~XkbKeyboard() = default;

// Asks the display each time: people switch their layout while programs run.
OptionalText XkbKeyboard::translate(std::uint16_t keyCode, KeyModifiers modifiers,
                                    std::uint8_t keyboardType) const {
  const auto key = kernelKeyCode(keyCode, keyboardType);
  if (!connection_ || !key) return std::nullopt;
  xcb_connection_t* const display = connection_->display.get();
  const Keymap keymap(xkb_x11_keymap_new_from_device(connection_->context.get(), display, connection_->device,
                                                     XKB_KEYMAP_COMPILE_NO_FLAGS));
  if (!keymap) return std::nullopt;
  const State current(xkb_x11_state_new_from_device(keymap.get(), display, connection_->device));
  const State state(xkb_state_new(keymap.get()));
  if (!current || !state) return std::nullopt;
  const xkb_layout_index_t layout = xkb_state_serialize_layout(current.get(), XKB_STATE_LAYOUT_EFFECTIVE);
  xkb_state_update_mask(state.get(), maskFor(keymap.get(), modifiers), 0, 0, 0, 0, layout);
  const char32_t scalar = xkb_state_key_get_utf32(state.get(), *key + kFirstKey);
  return scalar != 0 ? Text::fromScalar(scalar) : Text();
}

}  // namespace halvorn
