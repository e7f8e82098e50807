#include "Platform/processes/linux/x11/WindowManagerConnection.h"

#include <xcb/res.h>

#include <utility>

namespace halvorn {

std::unique_ptr<WindowManagerConnection> WindowManagerConnection::open(const std::string& displayName) {
  // The library would take the DISPLAY of the environment in place of an empty name.
  if (displayName.empty()) return nullptr;
  auto display = DisplayConnection::open(displayName);
  if (!display) return nullptr;
  std::unique_ptr<WindowManagerConnection> result(new WindowManagerConnection(std::move(display)));
  return result->prepare() ? std::move(result) : nullptr;
}

WindowManagerConnection::WindowManagerConnection(std::unique_ptr<DisplayConnection> display)
    : display_(std::move(display)) {}

WindowManagerConnection::~WindowManagerConnection() {
  if (hasEwmh_) xcb_ewmh_connection_wipe(&ewmh_);
}

bool WindowManagerConnection::prepare() {
  xcb_prefetch_extension_data(get(), &xcb_res_id);
  hasEwmh_ = xcb_ewmh_init_atoms_replies(&ewmh_, xcb_ewmh_init_atoms(get(), &ewmh_), nullptr) != 0;
  if (!hasEwmh_) return false;
  for (int i = 0; i < ewmh_.nb_screens; ++i) {
    if (ewmh_.screens[i]->root == root()) screen_ = i;
  }
  atoms_ = {display_->atom("WM_PROTOCOLS"), display_->atom("WM_DELETE_WINDOW"),
            display_->atom("WM_CHANGE_STATE"), display_->atom("_HALVORN_WAKE_UP")};
  if (display_->hasExtension(xcb_res_id)) {
    // Since 1.2.
    const auto version =
        adopted(xcb_res_query_version_reply(get(), xcb_res_query_version(get(), 1, 2), nullptr));
    tellsClientPids_ = version && (version->server_major > 1 || version->server_minor >= 2);
  }
  return isUsable();
}

void WindowManagerConnection::finishRequests() {
  xcb_flush(get());
  while (adopted(xcb_poll_for_event(get()))) {
  }
}

}  // namespace halvorn
