#include "Platform/session/linux/x11/DisplayConnection.h"

namespace halvorn {

namespace {

constexpr std::uint32_t kMostValues = 1024;

}  // namespace

std::unique_ptr<DisplayConnection> DisplayConnection::open(const std::optional<std::string>& displayName) {
  if (!displayName || displayName->empty()) return nullptr;
  int screen = 0;
  xcb_connection_t* const connection = xcb_connect(displayName->c_str(), &screen);
  // Also a failed connection is an object that must be given back.
  std::unique_ptr<DisplayConnection> result(new DisplayConnection(connection, screen));
  return result->isUsable() ? std::move(result) : nullptr;
}

DisplayConnection::DisplayConnection(xcb_connection_t* connection, int screen) : connection_(connection) {
  if (!isUsable()) return;
  xcb_screen_iterator_t screens = xcb_setup_roots_iterator(xcb_get_setup(get()));
  for (; screen > 0 && screens.rem > 1; --screen) xcb_screen_next(&screens);
  root_ = screens.data->root;
}

bool DisplayConnection::hasExtension(xcb_extension_t& extension) const {
  const xcb_query_extension_reply_t* const reply = xcb_get_extension_data(get(), &extension);
  return reply != nullptr && reply->present != 0;
}

xcb_atom_t DisplayConnection::atom(const std::string& name) const {
  const auto cookie = xcb_intern_atom(get(), 0, static_cast<std::uint16_t>(name.size()), name.c_str());
  const auto reply = adopted(xcb_intern_atom_reply(get(), cookie, nullptr));
  return reply ? reply->atom : XCB_NONE;
}

std::vector<std::uint32_t> DisplayConnection::values(xcb_window_t window, xcb_atom_t property,
                                                     xcb_atom_t type) const {
  const auto cookie = xcb_get_property(get(), 0, window, property, type, 0, kMostValues);
  const auto reply = adopted(xcb_get_property_reply(get(), cookie, nullptr));
  if (!reply || reply->type != type || reply->format != 32) return {};
  const auto* const first = static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
  return {first,
          first + xcb_get_property_value_length(reply.get()) / static_cast<int>(sizeof(std::uint32_t))};
}

void DisplayConnection::synchronize() const {
  adopted(xcb_get_input_focus_reply(get(), xcb_get_input_focus(get()), nullptr));
}

}  // namespace halvorn
