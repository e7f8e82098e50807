#include "Platform/linux/x11/X11MenuBar.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <algorithm>
#include <thread>
#include <utility>

#include "Platform/linux/x11/DisplayConnection.h"
#include "Platform/posix/FileDescriptor.h"

namespace halvorn {

// Follows the active window and its states. Thread: run() and what it calls that of the worker.
class X11MenuBar::Watch {
 public:
  Watch(std::unique_ptr<DisplayConnection> display, std::function<void(int kind)> tell)
      : display_(std::move(display)), tell_(std::move(tell)), stop_(::eventfd(0, EFD_CLOEXEC)) {}

  // Until stop(), or until the server goes.
  void run() {
    // Where the system had no thread left, this is the main one, which must not watch for good.
    if (std::this_thread::get_id() == installer_) return;
    select(display_->root());
    look();
    while (display_->isUsable()) {
      bool hasNews = false;
      while (adopted(xcb_poll_for_event(display_->get()))) hasNews = true;
      if (hasNews) {
        look();
        continue;  // looking takes in further events
      }
      pollfd waiting[] = {{xcb_get_file_descriptor(display_->get()), POLLIN, 0}, {stop_.get(), POLLIN, 0}};
      retried([&] { return ::poll(waiting, std::size(waiting), -1); });
      if (waiting[1].revents != 0) return;
    }
  }

  // Thread: any.
  void stop() {
    const std::uint64_t one = 1;
    (void)retried([&] { return ::write(stop_.get(), &one, sizeof one); });
  }

 private:
  void select(xcb_window_t window) {
    const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_change_window_attributes(display_->get(), window, XCB_CW_EVENT_MASK, &events);
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
    tell_(isHidden_ ? menuBarHiddenEvent : menuBarShownEvent);
  }

  const std::unique_ptr<DisplayConnection> display_;
  const std::function<void(int kind)> tell_;
  const FileDescriptor stop_;
  const xcb_atom_t activeWindow_ = display_->atom("_NET_ACTIVE_WINDOW");
  const xcb_atom_t states_ = display_->atom("_NET_WM_STATE");
  const xcb_atom_t fullScreen_ = display_->atom("_NET_WM_STATE_FULLSCREEN");
  const std::thread::id installer_ = std::this_thread::get_id();
  xcb_window_t watched_ = XCB_NONE;
  bool isHidden_ = false;
};

X11MenuBar::X11MenuBar(const std::optional<std::string>& displayName, Workers& workers,
                       MainThread& mainThread)
    : displayName_(displayName), workers_(workers), mainThread_(mainThread) {}

X11MenuBar::~X11MenuBar() {
  if (watch_) watch_->stop();
  gate_.close();
}

bool X11MenuBar::installHandler(Handler handler) {
  auto display = DisplayConnection::open(displayName_);
  if (!display) return false;
  handler_ = std::make_shared<Handler>(std::move(handler));
  // The main thread may get to it after this object has gone.
  watch_ =
      std::make_unique<Watch>(std::move(display), [this, weakHandler = std::weak_ptr(handler_)](int kind) {
        mainThread_.perform([weakHandler, kind] {
          if (const auto handle = weakHandler.lock()) (void)(*handle)({menuEventClass, kind});
        });
      });
  workers_.detach(gate_.wrap([watch = watch_.get()] { watch->run(); }));
  return true;
}

}  // namespace halvorn
