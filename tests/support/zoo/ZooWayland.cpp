#include "tests/support/zoo/ZooWayland.h"

#include <poll.h>
#include <sys/mman.h>
#include <unistd.h>
#include <wayland-client.h>
#include <xdg-shell-client-protocol.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <deque>
#include <string_view>
#include <utility>

namespace halvorn::zoo {
namespace {

constexpr int kSide = 120;
constexpr int kBytes = kSide * kSide * 4;

}  // namespace

class WaylandWindows::Compositor {
 public:
  explicit Compositor(const WaylandOptions& options) : applicationId_(options.applicationId) {
    display = wl_display_connect(options.socket.empty() ? nullptr : options.socket.c_str());
    if (display == nullptr) {
      std::puts("no compositor");
      std::exit(3);
    }
    static const wl_registry_listener listener = {
        .global = [](void* data, wl_registry* registry, std::uint32_t name, const char* interface,
                     std::uint32_t) { static_cast<Compositor*>(data)->take(registry, name, interface); },
        .global_remove = [](void*, wl_registry*, std::uint32_t) {}};
    wl_registry_add_listener(wl_display_get_registry(display), &listener, this);
    wl_display_roundtrip(display);
    static const xdg_wm_base_listener alive = {
        .ping = [](void*, xdg_wm_base* asked, std::uint32_t serial) { xdg_wm_base_pong(asked, serial); }};
    xdg_wm_base_add_listener(shell, &alive, nullptr);
    makePicture();
  }

  [[nodiscard]] const char* applicationId() const { return applicationId_.c_str(); }

  wl_display* display = nullptr;
  wl_compositor* surfaces = nullptr;
  wl_shm* memory = nullptr;
  xdg_wm_base* shell = nullptr;
  wl_buffer* picture = nullptr;
  std::deque<std::unique_ptr<Window>> windows;
  std::function<void()> closed;

 private:
  void take(wl_registry* registry, std::uint32_t name, std::string_view interface) {
    const auto bind = [&](const wl_interface& wanted, auto& proxy) {
      using Pointer = std::remove_reference_t<decltype(proxy)>;
      if (interface == wanted.name)
        proxy = static_cast<Pointer>(wl_registry_bind(registry, name, &wanted, 1));
    };
    bind(wl_compositor_interface, surfaces);
    bind(wl_shm_interface, memory);
    bind(xdg_wm_base_interface, shell);
  }
  void makePicture() {
    const int file = ::memfd_create("zoo", MFD_CLOEXEC);
    if (::ftruncate(file, kBytes) != 0) std::exit(5);
    wl_shm_pool* pool = wl_shm_create_pool(memory, file, kBytes);
    picture = wl_shm_pool_create_buffer(pool, 0, kSide, kSide, kSide * 4, WL_SHM_FORMAT_XRGB8888);
    wl_shm_pool_destroy(pool);
    ::close(file);
  }

  const std::string applicationId_;
};

class WaylandWindows::Window {
 public:
  Window(Compositor& compositor, const std::string& title, std::size_t index)
      : compositor_(compositor), index_(index) {
    surface_ = wl_compositor_create_surface(compositor.surfaces);
    shellSurface_ = xdg_wm_base_get_xdg_surface(compositor.shell, surface_);
    top_ = xdg_surface_get_toplevel(shellSurface_);
    static const xdg_surface_listener listener = {
        .configure = [](void* data, xdg_surface*, std::uint32_t serial) {
          static_cast<Window*>(data)->show(serial);
        }};
    static const xdg_toplevel_listener topListener = {
        .configure = [](void* data, xdg_toplevel*, std::int32_t, std::int32_t,
                        wl_array* states) { static_cast<Window*>(data)->learn(*states); },
        .close =
            [](void* data, xdg_toplevel*) {
              std::puts("close");
              static_cast<Window*>(data)->compositor_.closed();
            },
        .configure_bounds = [](void*, xdg_toplevel*, std::int32_t, std::int32_t) {},
        .wm_capabilities = [](void*, xdg_toplevel*, wl_array*) {}};
    xdg_surface_add_listener(shellSurface_, &listener, this);
    xdg_toplevel_add_listener(top_, &topListener, this);
    xdg_toplevel_set_title(top_, title.c_str());
    xdg_toplevel_set_app_id(top_, compositor.applicationId());
    wl_surface_commit(surface_);
  }
  ~Window() {
    xdg_toplevel_destroy(top_);
    xdg_surface_destroy(shellSurface_);
    wl_surface_destroy(surface_);
  }
  Window(const Window&) = delete;
  Window& operator=(const Window&) = delete;

 private:
  void show(std::uint32_t serial) {
    xdg_surface_ack_configure(shellSurface_, serial);
    wl_surface_attach(surface_, compositor_.picture, 0, 0);
    wl_surface_damage(surface_, 0, 0, kSide, kSide);
    wl_surface_commit(surface_);
    if (!std::exchange(isShown_, true)) std::puts("shown");
  }
  void learn(const wl_array& states) {
    bool isActive = false;
    const auto* const first = static_cast<const std::uint32_t*>(states.data);
    for (std::size_t i = 0; i < states.size / sizeof *first; ++i) {
      isActive |= first[i] == XDG_TOPLEVEL_STATE_ACTIVATED;
    }
    if (isActive && !isActive_) std::printf("focus %zu\n", index_);
    isActive_ = isActive;
  }

  Compositor& compositor_;
  const std::size_t index_;
  wl_surface* surface_ = nullptr;
  xdg_surface* shellSurface_ = nullptr;
  xdg_toplevel* top_ = nullptr;
  bool isShown_ = false;
  bool isActive_ = false;
};

WaylandWindows::WaylandWindows(const WaylandOptions& options)
    : compositor_(std::make_unique<Compositor>(options)) {
  for (int i = 0; i < options.count; ++i) open(options.title + " " + std::to_string(i));
}

WaylandWindows::~WaylandWindows() = default;

int WaylandWindows::descriptor() const { return wl_display_get_fd(compositor_->display); }

void WaylandWindows::open(const std::string& title) {
  auto& windows = compositor_->windows;
  windows.push_back(std::make_unique<Window>(*compositor_, title, windows.size()));
  wl_display_flush(compositor_->display);
}

void WaylandWindows::closeAll() {
  compositor_->windows.clear();
  wl_display_flush(compositor_->display);
}

void WaylandWindows::readEvents(const std::function<void()>& closed) {
  compositor_->closed = closed;
  wl_display* const display = compositor_->display;
  while (wl_display_prepare_read(display) != 0) wl_display_dispatch_pending(display);
  pollfd entry = {descriptor(), POLLIN, 0};
  if (::poll(&entry, 1, 0) > 0) {
    wl_display_read_events(display);
  } else {
    wl_display_cancel_read(display);
  }
  wl_display_dispatch_pending(display);
  wl_display_flush(display);
  if (wl_display_get_error(display) != 0) std::exit(4);
}

}  // namespace halvorn::zoo
