// Measures how long a program takes to paint its first window on an X server.
//
// usage: first_paint PROGRAM ARGUMENTS...
//
// The first drawing counts that covers at least half of a window of the program that is larger than 100 by 100 points.
#include <xcb/damage.h>
#include <xcb/xcb.h>

#include <cstdlib>
#include <map>
#include <memory>

#include "Measured.h"

namespace {

struct Free {
  void operator()(void* memory) const { std::free(memory); }
};

struct Area {
  int width = 0;
  int height = 0;
};

class Watch {
 public:
  explicit Watch(xcb_connection_t* server) : server_(server) {
    damage_ = xcb_get_extension_data(server_, &xcb_damage_id)->first_event;
    std::unique_ptr<xcb_damage_query_version_reply_t, Free> version(
        xcb_damage_query_version_reply(server_, xcb_damage_query_version(server_, 1, 1), nullptr));
    const std::uint32_t mask = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(server_)).data->root;
    xcb_change_window_attributes(server_, root, XCB_CW_EVENT_MASK, &mask);
    std::unique_ptr<xcb_get_input_focus_reply_t, Free> heard(
        xcb_get_input_focus_reply(server_, xcb_get_input_focus(server_), nullptr));
  }

  [[nodiscard]] int descriptor() const { return xcb_get_file_descriptor(server_); }
  [[nodiscard]] bool hasPainted() {
    while (xcb_generic_event_t* event = xcb_poll_for_event(server_)) {
      const std::unique_ptr<xcb_generic_event_t, Free> owned(event);
      if (take(event)) return true;
    }
    return false;
  }

 private:
  // True when the event was the first drawing of a window.
  bool take(const xcb_generic_event_t* event) {
    const int kind = event->response_type & 0x7f;
    if (kind == XCB_CREATE_NOTIFY) {
      const auto* made = reinterpret_cast<const xcb_create_notify_event_t*>(event);
      // The window manager's frames bypass it themselves.
      if (made->override_redirect == 0 && made->width > 100 && made->height > 100) watch(*made);
    }
    if (kind == damage_ + XCB_DAMAGE_NOTIFY) {
      const auto* drawn = reinterpret_cast<const xcb_damage_notify_event_t*>(event);
      const Area whole = windows_[drawn->drawable];
      return 2 * drawn->area.width * drawn->area.height >= whole.width * whole.height;
    }
    return false;
  }
  void watch(const xcb_create_notify_event_t& made) {
    windows_[made.window] = {made.width, made.height};
    xcb_damage_create(server_, xcb_generate_id(server_), made.window, XCB_DAMAGE_REPORT_LEVEL_RAW_RECTANGLES);
    xcb_flush(server_);
  }

  xcb_connection_t* server_;
  int damage_ = 0;
  std::map<xcb_window_t, Area> windows_;
};

}  // namespace

int main(int count, char** arguments) {
  if (count < 2) return 2;
  xcb_connection_t* server = xcb_connect(nullptr, nullptr);
  if (xcb_connection_has_error(server) != 0) return 1;
  Watch watch(server);
  const int status = measured::firstPaint(watch, arguments + 1);
  xcb_disconnect(server);
  return status;
}
