#include "Platform/session/linux/x11/X11MenuBar.h"

#include <algorithm>
#include <utility>

#include "Platform/session/linux/x11/DisplayConnection.h"

namespace halvorn {

// Follows the active window and its states.
class X11MenuBar::Watch {
 public:
  Watch(std::unique_ptr<DisplayConnection> display, RunLoop& loop, MenuBarHandler handler)
      : display_(std::move(display)), handler_(std::move(handler)) {
    select(display_->root());
    // The answer to this wakes the loop, so that the first look is taken there.
    xcb_discard_reply(display_->get(), xcb_get_input_focus(display_->get()).sequence);
    xcb_flush(display_->get());
    source_ = loop.whenReadable(xcb_get_file_descriptor(display_->get()), [this] { readEvents(); });
  }

 private:
  void readEvents() {
    bool hasNews = true;
    while (hasNews) {
      while (adopted(xcb_poll_for_event(display_->get()))) continue;
      look();
      // Looking takes in further events, of which the descriptor would not tell any more.
      hasNews = adopted(xcb_poll_for_queued_event(display_->get())) != nullptr;
    }
    if (!display_->isUsable()) source_.reset();
  }

  void look() {
    const auto active = display_->values(display_->root(), activeWindow_, XCB_ATOM_WINDOW);
    const xcb_window_t window = active.empty() ? XCB_NONE : active.front();
    if (window != XCB_NONE && window != watched_) select(window);
    watched_ = window;
    const auto states =
        window == XCB_NONE ? std::vector<std::uint32_t>() : display_->values(window, states_, XCB_ATOM_ATOM);
    const bool isFullScreen = std::find(states.begin(), states.end(), fullScreen_) != states.end();
    if (isFullScreen == isHidden_) return;
    isHidden_ = isFullScreen;
    (void)handler_({kMenuEventClass, isHidden_ ? kMenuBarHiddenEvent : kMenuBarShownEvent});
  }

  void select(xcb_window_t window) {
    const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_change_window_attributes(display_->get(), window, XCB_CW_EVENT_MASK, &events);
  }

  const std::unique_ptr<DisplayConnection> display_;
  const MenuBarHandler handler_;
  const xcb_atom_t activeWindow_ = display_->atom("_NET_ACTIVE_WINDOW");
  const xcb_atom_t states_ = display_->atom("_NET_WM_STATE");
  const xcb_atom_t fullScreen_ = display_->atom("_NET_WM_STATE_FULLSCREEN");
  xcb_window_t watched_ = XCB_NONE;
  bool isHidden_ = false;
  std::unique_ptr<RunLoop::Source> source_;  // goes before the connection whose descriptor it watches
};

X11MenuBar::X11MenuBar(const std::optional<std::string>& displayName, RunLoop& loop)
    : displayName_(displayName), loop_(loop) {}
X11MenuBar::~X11MenuBar() = default;

bool X11MenuBar::installHandler(MenuBarHandler handler) {
  auto display = DisplayConnection::open(displayName_);
  if (!display) return false;
  watch_ = std::make_unique<Watch>(std::move(display), loop_, std::move(handler));
  return true;
}

}  // namespace halvorn
