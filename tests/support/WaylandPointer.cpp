// The mouse of a desktop without devices. Says "ready", then does what each line of input says and answers "done":
//
//   click X Y      presses and lets go there, in pixels of the screen
//
//   kt_wayland_pointer WIDTH HEIGHT      of the screen
#include <linux/input-event-codes.h>
#include <time.h>
#include <wayland-client.h>
#include <wlr-virtual-pointer-client-protocol.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace {

zwlr_virtual_pointer_manager_v1* manager = nullptr;

void take(void*, wl_registry* registry, std::uint32_t name, const char* interface, std::uint32_t) {
  if (std::string_view(interface) != zwlr_virtual_pointer_manager_v1_interface.name) return;
  manager = static_cast<zwlr_virtual_pointer_manager_v1*>(
      wl_registry_bind(registry, name, &zwlr_virtual_pointer_manager_v1_interface, 1));
}

std::uint32_t milliseconds() {
  timespec time{};
  ::clock_gettime(CLOCK_MONOTONIC, &time);
  return static_cast<std::uint32_t>(time.tv_sec * 1000 + time.tv_nsec / 1'000'000);
}

}  // namespace

int main(int count, char** arguments) {
  std::setvbuf(stdout, nullptr, _IONBF, 0);
  wl_display* const display = wl_display_connect(nullptr);
  if (count < 3 || display == nullptr) return 3;
  static const wl_registry_listener listener = {.global = take,
                                                .global_remove = [](void*, wl_registry*, std::uint32_t) {}};
  wl_registry_add_listener(wl_display_get_registry(display), &listener, nullptr);
  wl_display_roundtrip(display);
  if (manager == nullptr) return 4;
  zwlr_virtual_pointer_v1* const pointer =
      zwlr_virtual_pointer_manager_v1_create_virtual_pointer(manager, nullptr);
  wl_display_roundtrip(display);
  std::printf("ready\n");
  const auto width = static_cast<std::uint32_t>(std::atoi(arguments[1]));
  const auto height = static_cast<std::uint32_t>(std::atoi(arguments[2]));
  std::uint32_t x = 0;
  std::uint32_t y = 0;
  while (std::scanf(" click %u %u", &x, &y) == 2) {
    zwlr_virtual_pointer_v1_motion_absolute(pointer, milliseconds(), x, y, width, height);
    zwlr_virtual_pointer_v1_frame(pointer);
    wl_display_roundtrip(display);
    for (const std::uint32_t state : {WL_POINTER_BUTTON_STATE_PRESSED, WL_POINTER_BUTTON_STATE_RELEASED}) {
      zwlr_virtual_pointer_v1_button(pointer, milliseconds(), BTN_LEFT, state);
      zwlr_virtual_pointer_v1_frame(pointer);
      wl_display_roundtrip(display);
    }
    std::printf("done\n");
  }
  return 0;
}
