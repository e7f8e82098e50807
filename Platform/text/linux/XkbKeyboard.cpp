#include "Platform/text/linux/XkbKeyboard.h"

#include <xcb/xcb.h>
#include <xkbcommon/xkbcommon-x11.h>
#include <xkbcommon/xkbcommon.h>

#include "Platform/text/linux/LayoutTable.h"

namespace halvorn {
namespace {

struct Closer {
  void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
  void operator()(xkb_context* context) const { xkb_context_unref(context); }
  void operator()(xkb_state* state) const { xkb_state_unref(state); }
};
using Context = std::unique_ptr<xkb_context, Closer>;
using State = std::unique_ptr<xkb_state, Closer>;

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
  connection->context.reset(silentContext());
  if (hasExtension == 0 || !connection->context) return;
  connection->device = xkb_x11_get_core_keyboard_device_id(connection->display.get());
  if (connection->device >= 0) connection_ = std::move(connection);
}

XkbKeyboard::~XkbKeyboard() = default;

// Asks the display each time: people switch their layout while programs run.
OptionalText XkbKeyboard::translate(std::uint16_t keyCode, KeyModifiers modifiers,
                                    std::uint8_t keyboardType) const {
  if (!connection_) return std::nullopt;
  xcb_connection_t* const display = connection_->display.get();
  xkb_keymap* const keymap = xkb_x11_keymap_new_from_device(connection_->context.get(), display,
                                                            connection_->device, XKB_KEYMAP_COMPILE_NO_FLAGS);
  const auto table = LayoutTable::of(keymap);
  if (!table) return std::nullopt;
  const State current(xkb_x11_state_new_from_device(keymap, display, connection_->device));
  if (!current) return std::nullopt;
  const xkb_layout_index_t layout = xkb_state_serialize_layout(current.get(), XKB_STATE_LAYOUT_EFFECTIVE);
  return table->typed(keyCode, modifiers, keyboardType, layout);
}

}  // namespace halvorn
