// A program with one window that does as it is told, line by line:
//
//   copy          becomes the owner of the clipboard
//   fullscreen    asks the window manager for the full screen;   windowed   asks for a window again
//   front         asks the window manager for the front
//   quit
//
// It answers each line with "done" once the server has heard of it, and says
// "ready" when its window is shown.
#include <poll.h>
#include <unistd.h>
#include <xcb/xcb.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <string>

namespace {

struct Free {
  void operator()(void* memory) const { std::free(memory); }
};

class Probe {
 public:
  explicit Probe(xcb_connection_t* server) : server_(server), window_(xcb_generate_id(server)) {
    const xcb_screen_t* const screen = xcb_setup_roots_iterator(xcb_get_setup(server)).data;
    root_ = screen->root;
    const std::uint32_t values[] = {screen->white_pixel, XCB_EVENT_MASK_STRUCTURE_NOTIFY};
    xcb_create_window(server, XCB_COPY_FROM_PARENT, window_, root_, 40, 40, 300, 200, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, screen->root_visual,
                      XCB_CW_BACK_PIXEL | XCB_CW_EVENT_MASK, values);
    const std::uint32_t pid = static_cast<std::uint32_t>(::getpid());
    char machine[256] = {};
    ::gethostname(machine, sizeof machine - 1);
    set(XCB_ATOM_WM_CLIENT_MACHINE, XCB_ATOM_STRING, 8, std::string(machine).size(), machine);
    set(atom("_NET_WM_PID"), XCB_ATOM_CARDINAL, 32, 1, &pid);
    set(XCB_ATOM_WM_NAME, XCB_ATOM_STRING, 8, 5, "Probe");
    xcb_map_window(server, window_);
    finish();
  }

  void waitUntilShown() {
    while (const std::unique_ptr<xcb_generic_event_t, Free> event{xcb_wait_for_event(server_)}) {
      if ((event->response_type & 0x7F) == XCB_MAP_NOTIFY) return;
    }
  }

  bool obey(const std::string& line) {
    constexpr std::uint32_t remove = 0;
    constexpr std::uint32_t add = 1;
    constexpr std::uint32_t asPerson = 2;
    if (line == "copy") xcb_set_selection_owner(server_, window_, atom("CLIPBOARD"), XCB_CURRENT_TIME);
    if (line == "fullscreen") ask("_NET_WM_STATE", add, atom("_NET_WM_STATE_FULLSCREEN"));
    if (line == "windowed") ask("_NET_WM_STATE", remove, atom("_NET_WM_STATE_FULLSCREEN"));
    if (line == "front") ask("_NET_ACTIVE_WINDOW", asPerson, 0);
    finish();
    return line != "quit";
  }

 private:
  xcb_atom_t atom(const std::string& name) {
    const auto cookie = xcb_intern_atom(server_, 0, static_cast<std::uint16_t>(name.size()), name.c_str());
    const std::unique_ptr<xcb_intern_atom_reply_t, Free> reply(
        xcb_intern_atom_reply(server_, cookie, nullptr));
    return reply ? reply->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
  }
  void set(xcb_atom_t property, xcb_atom_t type, std::uint8_t bits, std::size_t count, const void* values) {
    xcb_change_property(server_, XCB_PROP_MODE_REPLACE, window_, property, type, bits,
                        static_cast<std::uint32_t>(count), values);
  }
  void ask(const char* what, std::uint32_t first, std::uint32_t second) {
    xcb_client_message_event_t request = {};
    request.response_type = XCB_CLIENT_MESSAGE;
    request.format = 32;
    request.window = window_;
    request.type = atom(what);
    request.data.data32[0] = first;
    request.data.data32[1] = second;
    xcb_send_event(server_, 0, root_,
                   XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                   reinterpret_cast<const char*>(&request));
  }
  void finish() {
    const std::unique_ptr<xcb_get_input_focus_reply_t, Free> reply(
        xcb_get_input_focus_reply(server_, xcb_get_input_focus(server_), nullptr));
  }

  xcb_connection_t* const server_;
  const xcb_window_t window_;
  xcb_window_t root_ = XCB_NONE;
};

}  // namespace

int main() {
  const std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> server(xcb_connect(nullptr, nullptr),
                                                                            &xcb_disconnect);
  if (xcb_connection_has_error(server.get()) != 0) return EXIT_FAILURE;
  Probe probe(server.get());
  probe.waitUntilShown();
  std::cout << "ready" << std::endl;
  for (std::string line; std::getline(std::cin, line);) {
    if (!probe.obey(line)) return EXIT_SUCCESS;
    std::cout << "done" << std::endl;
  }
  return EXIT_SUCCESS;
}
