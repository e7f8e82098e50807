// Micro: comes to the front for a moment and quits.
//
// It shows a window without anything in it, asks the window manager for the front, and ends a moment after it
// got it, or when it was not given it in time. Status 0 when it was in front, 1 otherwise.
#include <poll.h>
#include <unistd.h>
#include <xcb/xcb.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string_view>

namespace {

using Clock = std::chrono::steady_clock;
using namespace std::chrono_literals;

constexpr auto kPatience = 2s;            // for the window manager
constexpr auto kMomentInFront = 60ms;     // long enough for anybody who looks every millisecond
constexpr std::uint16_t kWindowSize = 8;  // pixels
constexpr std::uint32_t kAskedByPerson = 2;

struct Free {
  void operator()(void* memory) const { std::free(memory); }
};

class Window {
 public:
  explicit Window(xcb_connection_t* server) : server_(server), window_(xcb_generate_id(server)) {
    const xcb_screen_t* const screen = xcb_setup_roots_iterator(xcb_get_setup(server)).data;
    root_ = screen->root;
    activeWindow_ = atom("_NET_ACTIVE_WINDOW");
    const std::uint32_t watchProperties = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_change_window_attributes(server_, root_, XCB_CW_EVENT_MASK, &watchProperties);
    const std::uint32_t values[] = {screen->black_pixel, XCB_EVENT_MASK_STRUCTURE_NOTIFY};
    xcb_create_window(server_, XCB_COPY_FROM_PARENT, window_, root_, 0, 0, kWindowSize, kWindowSize, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, screen->root_visual,
                      XCB_CW_BACK_PIXEL | XCB_CW_EVENT_MASK, values);
    describe();
    xcb_map_window(server_, window_);
    xcb_flush(server_);
  }

  void askForFront() {
    xcb_client_message_event_t request = {};
    request.response_type = XCB_CLIENT_MESSAGE;
    request.format = 32;
    request.window = window_;
    request.type = activeWindow_;
    request.data.data32[0] = kAskedByPerson;
    xcb_send_event(server_, 0, root_,
                   XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                   reinterpret_cast<const char*>(&request));
    xcb_flush(server_);
  }

  [[nodiscard]] bool isInFront() const {
    const auto cookie = xcb_get_property(server_, 0, root_, activeWindow_, XCB_ATOM_WINDOW, 0, 1);
    const std::unique_ptr<xcb_get_property_reply_t, Free> reply(
        xcb_get_property_reply(server_, cookie, nullptr));
    if (!reply || xcb_get_property_value_length(reply.get()) < static_cast<int>(sizeof window_)) return false;
    return *static_cast<const xcb_window_t*>(xcb_get_property_value(reply.get())) == window_;
  }

 private:
  [[nodiscard]] xcb_atom_t atom(std::string_view name) const {
    const auto cookie = xcb_intern_atom(server_, 0, static_cast<std::uint16_t>(name.size()), name.data());
    const std::unique_ptr<xcb_intern_atom_reply_t, Free> reply(
        xcb_intern_atom_reply(server_, cookie, nullptr));
    return reply ? reply->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
  }
  void setText(xcb_atom_t property, std::string_view text) {
    xcb_change_property(server_, XCB_PROP_MODE_REPLACE, window_, property, XCB_ATOM_STRING, 8,
                        static_cast<std::uint32_t>(text.size()), text.data());
  }
  void setNumber(std::string_view property, xcb_atom_t type, std::uint32_t value) {
    xcb_change_property(server_, XCB_PROP_MODE_REPLACE, window_, atom(property), type, 32, 1, &value);
  }

  // Tells the window manager whose window this is, and that no list of windows need show it.
  void describe() {
    setText(XCB_ATOM_WM_NAME, "Micro");
    setText(XCB_ATOM_WM_CLASS, std::string_view("micro\0Micro", sizeof "micro\0Micro"));
    char machine[256] = {};
    if (::gethostname(machine, sizeof machine - 1) == 0) setText(XCB_ATOM_WM_CLIENT_MACHINE, machine);
    setNumber("_NET_WM_PID", XCB_ATOM_CARDINAL, static_cast<std::uint32_t>(::getpid()));
    setNumber("_NET_WM_STATE", XCB_ATOM_ATOM, atom("_NET_WM_STATE_SKIP_TASKBAR"));
    if (const char* const startup = std::getenv("DESKTOP_STARTUP_ID"))
      setText(atom("_NET_STARTUP_ID"), startup);
  }

  xcb_connection_t* const server_;
  const xcb_window_t window_;
  xcb_window_t root_ = XCB_NONE;
  xcb_atom_t activeWindow_ = XCB_NONE;
};

enum class News { None, WindowIsShown, ServerIsGone };

// Sleeps until the server tells of something, or until the moment.
News waitForNews(xcb_connection_t* server, Clock::time_point until) {
  // What came along with an earlier answer is here already; the descriptor would not tell of it.
  xcb_generic_event_t* first = xcb_poll_for_queued_event(server);
  if (first == nullptr) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(until - Clock::now());
    pollfd waiting = {xcb_get_file_descriptor(server), POLLIN, 0};
    ::poll(&waiting, 1, static_cast<int>(std::max<std::int64_t>(0, left.count())));
    first = xcb_poll_for_event(server);
  }
  News news = News::None;
  for (std::unique_ptr<xcb_generic_event_t, Free> event(first); event;
       event.reset(xcb_poll_for_event(server))) {
    if ((event->response_type & 0x7F) == XCB_MAP_NOTIFY) news = News::WindowIsShown;
  }
  return xcb_connection_has_error(server) == 0 ? news : News::ServerIsGone;
}

bool comeToFront(xcb_connection_t* server) {
  Window window(server);
  const auto end = Clock::now() + kPatience;
  while (!window.isInFront()) {
    const News news = Clock::now() < end ? waitForNews(server, end) : News::ServerIsGone;
    if (news == News::ServerIsGone) return false;
    // Before it is shown, a window cannot be asked for.
    if (news == News::WindowIsShown) window.askForFront();
  }
  const auto enough = Clock::now() + kMomentInFront;
  while (Clock::now() < enough && waitForNews(server, enough) != News::ServerIsGone) continue;
  return true;
}

}  // namespace

int main() {
  const std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> server(xcb_connect(nullptr, nullptr),
                                                                            &xcb_disconnect);
  if (xcb_connection_has_error(server.get()) != 0) return EXIT_FAILURE;
  return comeToFront(server.get()) ? EXIT_SUCCESS : EXIT_FAILURE;
}
