#include "Platform/session/linux/wayland/WlrToplevels.h"

#include <wlr-foreign-toplevel-client-protocol.h>

#include <algorithm>
#include <utility>

namespace halvorn {

// Its events come in any order and count together, once the compositor says that it is done.
class WlrToplevels::Window {
 public:
  Window(Manager& manager, zwlr_foreign_toplevel_handle_v1* handle, std::uint64_t number);

  [[nodiscard]] zwlr_foreign_toplevel_handle_v1* handle() const { return handle_.get(); }
  // Nothing before the compositor was done for the first time.
  [[nodiscard]] const std::optional<Toplevel>& told() const { return told_; }

 private:
  void takeState(const wl_array& states);
  void finish();

  Manager& manager_;
  const WaylandPointer<zwlr_foreign_toplevel_handle_v1, zwlr_foreign_toplevel_handle_v1_destroy> handle_;
  Toplevel coming_;
  std::optional<Toplevel> told_;
};

class WlrToplevels::Manager {
 public:
  explicit Manager(zwlr_foreign_toplevel_manager_v1* manager) : manager_(manager) {
    static const zwlr_foreign_toplevel_manager_v1_listener listener = {
        .toplevel =
            [](void* data, zwlr_foreign_toplevel_manager_v1*, zwlr_foreign_toplevel_handle_v1* handle) {
              auto& self = *static_cast<Manager*>(data);
              self.windows.push_back(std::make_unique<Window>(self, handle, ++self.lastNumber_));
            },
        .finished =
            [](void* data, zwlr_foreign_toplevel_manager_v1*) {
              static_cast<Manager*>(data)->isFinished = true;
            }};
    zwlr_foreign_toplevel_manager_v1_add_listener(manager, &listener, this);
  }

  void remove(const Window& window) {
    std::erase_if(windows, [&](const auto& each) { return each.get() == &window; });
    changes.windows = true;
  }
  // What is active comes to stand behind the others, and stays there until another one is.
  void moveToBack(const Window& window) {
    std::stable_partition(windows.begin(), windows.end(),
                          [&](const auto& each) { return each.get() != &window; });
  }

  std::vector<std::unique_ptr<Window>> windows;
  Changes changes;
  bool isFinished = false;

 private:
  const WaylandPointer<zwlr_foreign_toplevel_manager_v1, zwlr_foreign_toplevel_manager_v1_destroy> manager_;
  std::uint64_t lastNumber_ = 0;
};

WlrToplevels::Window::Window(Manager& manager, zwlr_foreign_toplevel_handle_v1* handle, std::uint64_t number)
    : manager_(manager), handle_(handle) {
  coming_.number = number;
  static const zwlr_foreign_toplevel_handle_v1_listener listener = {
      .title = [](void*, zwlr_foreign_toplevel_handle_v1*, const char*) {},
      .app_id =
          [](void* data, zwlr_foreign_toplevel_handle_v1*, const char* application) {
            static_cast<Window*>(data)->coming_.applicationId = application;
          },
      .output_enter = [](void*, zwlr_foreign_toplevel_handle_v1*, wl_output*) {},
      .output_leave = [](void*, zwlr_foreign_toplevel_handle_v1*, wl_output*) {},
      .state = [](void* data, zwlr_foreign_toplevel_handle_v1*,
                  wl_array* states) { static_cast<Window*>(data)->takeState(*states); },
      .done = [](void* data, zwlr_foreign_toplevel_handle_v1*) { static_cast<Window*>(data)->finish(); },
      .closed =
          [](void* data, zwlr_foreign_toplevel_handle_v1*) {
            auto* const self = static_cast<Window*>(data);
            self->manager_.remove(*self);
          },
      .parent = [](void*, zwlr_foreign_toplevel_handle_v1*, zwlr_foreign_toplevel_handle_v1*) {}};
  zwlr_foreign_toplevel_handle_v1_add_listener(handle, &listener, this);
}

void WlrToplevels::Window::takeState(const wl_array& states) {
  const auto* const first = static_cast<const std::uint32_t*>(states.data);
  const auto* const end = first + states.size / sizeof *first;
  const auto isIn = [&](std::uint32_t state) { return std::find(first, end, state) != end; };
  coming_.isActive = isIn(ZWLR_FOREIGN_TOPLEVEL_HANDLE_V1_STATE_ACTIVATED);
  coming_.isFullScreen = isIn(ZWLR_FOREIGN_TOPLEVEL_HANDLE_V1_STATE_FULLSCREEN);
  coming_.isMinimized = isIn(ZWLR_FOREIGN_TOPLEVEL_HANDLE_V1_STATE_MINIMIZED);
}

void WlrToplevels::Window::finish() {
  const Toplevel before = told_.value_or(Toplevel{});
  const bool isNew = !std::exchange(told_, coming_).has_value();
  manager_.changes.windows |= isNew || before.applicationId != told_->applicationId;
  manager_.changes.active |= before.isActive != told_->isActive || before.isFullScreen != told_->isFullScreen;
  if (told_->isActive && !before.isActive) manager_.moveToBack(*this);
}

std::unique_ptr<WlrToplevels> WlrToplevels::over(std::unique_ptr<WaylandConnection> connection) {
  if (!connection->offers(zwlr_foreign_toplevel_manager_v1_interface)) return nullptr;
  return std::unique_ptr<WlrToplevels>(new WlrToplevels(std::move(connection)));
}

WlrToplevels::WlrToplevels(std::unique_ptr<WaylandConnection> connection)
    : connection_(std::move(connection)),
      seat_(connection_->bind<wl_seat>(wl_seat_interface, 1)),
      manager_(std::make_unique<Manager>(connection_->bind<zwlr_foreign_toplevel_manager_v1>(
          zwlr_foreign_toplevel_manager_v1_interface, 3))) {}

WlrToplevels::~WlrToplevels() = default;

bool WlrToplevels::isUsable() const { return connection_->isUsable() && !manager_->isFinished; }

std::optional<std::vector<Toplevel>> WlrToplevels::windows() {
  if (!connection_->roundTrip() || !isUsable()) return std::nullopt;
  return knownWindows();
}

std::vector<Toplevel> WlrToplevels::knownWindows() const {
  std::vector<Toplevel> result;
  for (const auto& window : manager_->windows) {
    if (window->told()) result.push_back(*window->told());
  }
  return result;
}

WlrToplevels::Window* WlrToplevels::find(std::uint64_t number) {
  for (const auto& window : manager_->windows) {
    if (window->told() && window->told()->number == number) return window.get();
  }
  return nullptr;
}

void WlrToplevels::close(std::uint64_t number) {
  if (const Window* const window = find(number)) {
    zwlr_foreign_toplevel_handle_v1_close(window->handle());
    connection_->readEvents();
  }
}

void WlrToplevels::activate(std::uint64_t number) {
  const Window* const window = find(number);
  if (window == nullptr || !seat_) return;
  zwlr_foreign_toplevel_handle_v1_activate(window->handle(), seat_.get());
  connection_->readEvents();
}

void WlrToplevels::setMinimized(std::uint64_t number, bool isMinimized) {
  const Window* const window = find(number);
  if (window == nullptr) return;
  (isMinimized ? zwlr_foreign_toplevel_handle_v1_set_minimized
               : zwlr_foreign_toplevel_handle_v1_unset_minimized)(window->handle());
  connection_->readEvents();
}

WlrToplevels::Changes WlrToplevels::readChanges() {
  connection_->readEvents();
  return std::exchange(manager_->changes, {});
}

}  // namespace halvorn
