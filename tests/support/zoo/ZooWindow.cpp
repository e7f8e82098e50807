#include "tests/support/zoo/ZooWindow.h"

#include <unistd.h>
#include <xcb/xcb_icccm.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

namespace halvorn::zoo {
namespace {

constexpr std::uint16_t kSide = 120;

}  // namespace

Windows::Windows(const WindowOptions& options) : connection_(xcb_connect(nullptr, nullptr)) {
  if (xcb_connection_has_error(connection_) != 0) {
    std::puts("no X server");
    std::exit(3);
  }
  screen_ = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data;
  protocols_ = atom("WM_PROTOCOLS");
  deleteWindow_ = atom("WM_DELETE_WINDOW");
  for (int i = 0; i < options.count; ++i)
    windows_.push_back(createWindow(options, options.title + " " + std::to_string(i)));
  xcb_flush(connection_);
}

xcb_atom_t Windows::atom(const char* name) const {
  const auto cookie = xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(std::strlen(name)), name);
  const std::unique_ptr<xcb_intern_atom_reply_t, void (*)(void*)> reply(
      xcb_intern_atom_reply(connection_, cookie, nullptr), std::free);
  return reply ? reply->atom : XCB_NONE;
}

void Windows::open(const std::string& title) {
  windows_.push_back(createWindow({}, title));
  xcb_flush(connection_);
}

void Windows::closeAll() {
  for (const xcb_window_t window : windows_) xcb_destroy_window(connection_, window);
  xcb_flush(connection_);
}

xcb_window_t Windows::createWindow(const WindowOptions& options, const std::string& title) {
  const xcb_window_t window = xcb_generate_id(connection_);
  const std::uint32_t values[] = {screen_->white_pixel,
                                  XCB_EVENT_MASK_FOCUS_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY};
  xcb_create_window(connection_, XCB_COPY_FROM_PARENT, window, screen_->root, 0, 0, kSide, kSide, 0,
                    XCB_WINDOW_CLASS_INPUT_OUTPUT, screen_->root_visual,
                    XCB_CW_BACK_PIXEL | XCB_CW_EVENT_MASK, values);
  xcb_icccm_set_wm_name(connection_, window, XCB_ATOM_STRING, 8, static_cast<std::uint32_t>(title.size()),
                        title.c_str());
  if (!options.windowClass.empty()) {
    const std::string both = options.windowClass + '\0' + options.windowClass + '\0';
    xcb_icccm_set_wm_class(connection_, window, static_cast<std::uint32_t>(both.size()), both.data());
  }
  char machine[256] = {};
  ::gethostname(machine, sizeof machine - 1);
  const std::string machineName = options.claimedMachine.empty() ? machine : options.claimedMachine;
  xcb_icccm_set_wm_client_machine(connection_, window, XCB_ATOM_STRING, 8,
                                  static_cast<std::uint32_t>(machineName.size()), machineName.c_str());
  if (!options.hidesPid) {
    const std::uint32_t pid = options.claimedPid != 0 ? static_cast<std::uint32_t>(options.claimedPid)
                                                      : static_cast<std::uint32_t>(::getpid());
    xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window, atom("_NET_WM_PID"), XCB_ATOM_CARDINAL,
                        32, 1, &pid);
  }
  if (!options.cannotBeClosed) {
    xcb_icccm_set_wm_protocols(connection_, window, protocols_, 1, &deleteWindow_);
  }
  xcb_map_window(connection_, window);
  return window;
}

std::size_t Windows::indexOf(xcb_window_t window) const {
  return static_cast<std::size_t>(std::find(windows_.begin(), windows_.end(), window) - windows_.begin());
}

void Windows::readEvents(const std::function<void()>& closed) {
  while (xcb_generic_event_t* raw = xcb_poll_for_event(connection_)) {
    const std::unique_ptr<xcb_generic_event_t, void (*)(void*)> event(raw, std::free);
    switch (event->response_type & 0x7F) {
      case XCB_CLIENT_MESSAGE: {
        const auto* message = reinterpret_cast<const xcb_client_message_event_t*>(raw);
        if (message->type != protocols_) {
          std::puts("message");
        } else if (message->data.data32[0] == deleteWindow_) {
          std::puts("close");
          closed();
        }
        break;
      }
      case XCB_FOCUS_IN: {
        const auto* focus = reinterpret_cast<const xcb_focus_in_event_t*>(raw);
        if (focus->mode == XCB_NOTIFY_MODE_NORMAL) std::printf("focus %zu\n", indexOf(focus->event));
        break;
      }
      case XCB_UNMAP_NOTIFY:
        std::puts("iconified");
        break;
      case XCB_MAP_NOTIFY:
        std::puts("shown");
        break;
      default:
        break;
    }
  }
  if (xcb_connection_has_error(connection_) != 0) std::exit(4);
}

}  // namespace halvorn::zoo
