// Measures how long a program takes to have its first window shown by a compositor made with wlroots.
//
// usage: first_paint_wayland PROGRAM ARGUMENTS...
//
// The first picture of the screen counts in which at least 200 by 200 points have changed. It comes with the next refresh
// of the screen: up to 17 ms later than the window was painted.
#include <sys/mman.h>
#include <unistd.h>
#include <wayland-client.h>
#include <wlr-screencopy-client-protocol.h>

#include <cstdint>
#include <string_view>
#include <tuple>

#include "Measured.h"

namespace {

constexpr std::uint32_t kLeastSide = 200;
constexpr std::chrono::milliseconds kRest{200};

class Watch {
 public:
  explicit Watch(wl_display* display) : display_(display) {
    static const wl_registry_listener listener = {
        .global = [](void* data, wl_registry* registry, std::uint32_t name, const char* interface,
                     std::uint32_t) { static_cast<Watch*>(data)->bind(registry, name, interface); },
        .global_remove = [](void*, wl_registry*, std::uint32_t) {}};
    wl_registry_add_listener(wl_display_get_registry(display_), &listener, this);
    wl_display_roundtrip(display_);
  }
  // Returns once nothing moves on the screen: the window of the program before may still be going.
  [[nodiscard]] bool begin() {
    if (manager_ == nullptr || output_ == nullptr || memory_ == nullptr) return false;
    ask();
    int seen = 0;
    do {
      seen = pictures_;
      const auto end = measured::Clock::now() + kRest;
      while (pictures_ == seen && measured::Clock::now() < end) {
        std::ignore = hasPainted();
        pollfd input = {descriptor(), POLLIN, 0};
        ::poll(&input, 1, 10);
      }
    } while (pictures_ != seen);
    isPainted_ = false;
    return pictures_ > 0;
  }

  [[nodiscard]] int descriptor() const { return wl_display_get_fd(display_); }
  [[nodiscard]] bool hasPainted() {
    while (wl_display_prepare_read(display_) != 0) wl_display_dispatch_pending(display_);
    wl_display_flush(display_);
    pollfd input = {descriptor(), POLLIN, 0};
    if (::poll(&input, 1, 0) > 0) {
      wl_display_read_events(display_);
    } else {
      wl_display_cancel_read(display_);
    }
    wl_display_dispatch_pending(display_);
    wl_display_flush(display_);
    return isPainted_;
  }

 private:
  void bind(wl_registry* registry, std::uint32_t name, std::string_view interface) {
    const auto bound = [&](const wl_interface& wanted, std::uint32_t version) {
      return wl_registry_bind(registry, name, &wanted, version);
    };
    if (interface == zwlr_screencopy_manager_v1_interface.name)
      manager_ = static_cast<zwlr_screencopy_manager_v1*>(bound(zwlr_screencopy_manager_v1_interface, 2));
    if (interface == wl_output_interface.name)
      output_ = static_cast<wl_output*>(bound(wl_output_interface, 1));
    if (interface == wl_shm_interface.name) memory_ = static_cast<wl_shm*>(bound(wl_shm_interface, 1));
  }
  void ask() {
    static const zwlr_screencopy_frame_v1_listener listener = {
        .buffer =
            [](void* data, zwlr_screencopy_frame_v1*, std::uint32_t format, std::uint32_t width,
               std::uint32_t height,
               std::uint32_t stride) { static_cast<Watch*>(data)->copy(format, width, height, stride); },
        .flags = [](void*, zwlr_screencopy_frame_v1*, std::uint32_t) {},
        .ready = [](void* data, zwlr_screencopy_frame_v1*, std::uint32_t, std::uint32_t,
                    std::uint32_t) { static_cast<Watch*>(data)->next(); },
        .failed = [](void*, zwlr_screencopy_frame_v1*) {},
        .damage =
            [](void* data, zwlr_screencopy_frame_v1*, std::uint32_t, std::uint32_t, std::uint32_t width,
               std::uint32_t height) {
              if (width >= kLeastSide && height >= kLeastSide) static_cast<Watch*>(data)->isPainted_ = true;
            }};
    frame_ = zwlr_screencopy_manager_v1_capture_output(manager_, 0, output_);
    zwlr_screencopy_frame_v1_add_listener(frame_, &listener, this);
    wl_display_flush(display_);
  }
  void copy(std::uint32_t format, std::uint32_t width, std::uint32_t height, std::uint32_t stride) {
    if (picture_ == nullptr) {
      const auto size = static_cast<std::int32_t>(stride * height);
      const int file = ::memfd_create("picture", MFD_CLOEXEC);
      if (::ftruncate(file, size) != 0) return;
      wl_shm_pool* const pool = wl_shm_create_pool(memory_, file, size);
      picture_ = wl_shm_pool_create_buffer(pool, 0, static_cast<std::int32_t>(width),
                                           static_cast<std::int32_t>(height),
                                           static_cast<std::int32_t>(stride), format);
      ::close(file);
    }
    if (pictures_ == 0) {
      zwlr_screencopy_frame_v1_copy(frame_, picture_);
    } else {
      zwlr_screencopy_frame_v1_copy_with_damage(frame_, picture_);
    }
  }
  void next() {
    ++pictures_;
    zwlr_screencopy_frame_v1_destroy(frame_);
    ask();
  }

  wl_display* const display_;
  zwlr_screencopy_manager_v1* manager_ = nullptr;
  wl_output* output_ = nullptr;
  wl_shm* memory_ = nullptr;
  wl_buffer* picture_ = nullptr;
  zwlr_screencopy_frame_v1* frame_ = nullptr;
  int pictures_ = 0;
  bool isPainted_ = false;
};

}  // namespace

int main(int count, char** arguments) {
  if (count < 2) return 2;
  wl_display* const display = wl_display_connect(nullptr);
  if (display == nullptr) return 1;
  Watch watch(display);
  if (!watch.begin()) return 1;
  return measured::firstPaint(watch, arguments + 1);
}
