#include "Platform/session/linux/x11/X11Pasteboard.h"

#include <xcb/xfixes.h>

#include "Platform/session/linux/x11/DisplayConnection.h"

namespace halvorn {

namespace {

constexpr std::uint8_t kSentByOthers = 0x80;  // marks events that clients send to each other

}  // namespace

X11Pasteboard::X11Pasteboard(const std::optional<std::string>& displayName) : displayName_(displayName) {}
X11Pasteboard::~X11Pasteboard() = default;

void X11Pasteboard::connect() {
  hasTriedToConnect_ = true;
  auto display = DisplayConnection::open(displayName_);
  if (!display || !display->hasExtension(xcb_xfixes_id)) return;
  xcb_connection_t* const server = display->get();
  // The server takes no other request of the extension before it was asked for its version.
  const auto version = xcb_xfixes_query_version(server, XCB_XFIXES_MAJOR_VERSION, XCB_XFIXES_MINOR_VERSION);
  if (!adopted(xcb_xfixes_query_version_reply(server, version, nullptr))) return;
  clipboard_ = display->atom("CLIPBOARD");
  changeEvent_ = xcb_get_extension_data(server, &xcb_xfixes_id)->first_event + XCB_XFIXES_SELECTION_NOTIFY;
  xcb_xfixes_select_selection_input(server, display->root(), clipboard_,
                                    XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                        XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                        XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
  display_ = std::move(display);
}

std::optional<std::int64_t> X11Pasteboard::changeCount() {
  if (!hasTriedToConnect_) connect();
  if (!display_) return std::nullopt;
  display_->synchronize();
  while (const auto event = adopted(xcb_poll_for_event(display_->get()))) {
    if ((event->response_type & ~kSentByOthers) != changeEvent_) continue;
    const auto& change = reinterpret_cast<const xcb_xfixes_selection_notify_event_t&>(*event);
    if (change.selection == clipboard_) ++count_;
  }
  return count_;
}

}  // namespace halvorn
