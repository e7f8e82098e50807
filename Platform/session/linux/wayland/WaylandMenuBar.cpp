#include "Platform/session/linux/wayland/WaylandMenuBar.h"

#include <algorithm>
#include <utility>

namespace halvorn {

class WaylandMenuBar::Watch {
 public:
  Watch(std::unique_ptr<ToplevelList> list, RunLoop& loop, MenuBarHandler handler)
      : list_(std::move(list)), handler_(std::move(handler)) {
    // The windows that are there already are told by then, in the loop.
    source_ = loop.whenReadable(list_->descriptor(), [this] { look(); });
    std::ignore = list_->readChanges();
  }

 private:
  void look() {
    std::ignore = list_->readChanges();
    if (!list_->isUsable()) {
      source_.reset();
      return;
    }
    const auto windows = list_->knownWindows();
    const bool isFullScreen = std::any_of(windows.begin(), windows.end(), [](const Toplevel& window) {
      return window.isActive && window.isFullScreen;
    });
    if (isFullScreen == isHidden_) return;
    isHidden_ = isFullScreen;
    (void)handler_({kMenuEventClass, isHidden_ ? kMenuBarHiddenEvent : kMenuBarShownEvent});
  }

  const std::unique_ptr<ToplevelList> list_;
  const MenuBarHandler handler_;
  bool isHidden_ = false;
  std::unique_ptr<RunLoop::Source> source_;  // goes before the connection whose descriptor it watches
};

WaylandMenuBar::WaylandMenuBar(DesktopAddresses desktop, RunLoop& loop)
    : desktop_(std::move(desktop)), loop_(loop) {}
WaylandMenuBar::~WaylandMenuBar() = default;

bool WaylandMenuBar::installHandler(MenuBarHandler handler) {
  auto list = ToplevelList::open(desktop_);
  if (!list) return false;
  watch_ = std::make_unique<Watch>(std::move(list), loop_, std::move(handler));
  return true;
}

}  // namespace halvorn
