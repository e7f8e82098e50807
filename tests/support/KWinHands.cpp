// Keyboard and mouse of a KWin without devices. Says "ready", then does what each line of input says and
// answers "done":
//
//   key CODE      presses the key with that code of the kernel's, and lets it go
//   click X Y     presses and lets go there, in pixels of the screen
#include <kwin-fake-input-client-protocol.h>
#include <linux/input-event-codes.h>
#include <wayland-client.h>

#include <cstdint>
#include <cstdio>
#include <iostream>
#include <string>
#include <string_view>

namespace {

org_kde_kwin_fake_input* input = nullptr;

void take(void*, wl_registry* registry, std::uint32_t name, const char* interface, std::uint32_t version) {
  constexpr std::uint32_t kWithKeys = 4;
  if (std::string_view(interface) != org_kde_kwin_fake_input_interface.name || version < kWithKeys) return;
  input = static_cast<org_kde_kwin_fake_input*>(
      wl_registry_bind(registry, name, &org_kde_kwin_fake_input_interface, kWithKeys));
}

void press(std::uint32_t key) {
  for (const std::uint32_t state : {WL_KEYBOARD_KEY_STATE_PRESSED, WL_KEYBOARD_KEY_STATE_RELEASED}) {
    org_kde_kwin_fake_input_keyboard_key(input, key, state);
  }
}

void click(int x, int y) {
  org_kde_kwin_fake_input_pointer_motion_absolute(input, wl_fixed_from_int(x), wl_fixed_from_int(y));
  for (const std::uint32_t state : {WL_POINTER_BUTTON_STATE_PRESSED, WL_POINTER_BUTTON_STATE_RELEASED}) {
    org_kde_kwin_fake_input_button(input, BTN_LEFT, state);
  }
}

}  // namespace

int main() {
  std::setvbuf(stdout, nullptr, _IONBF, 0);
  wl_display* const display = wl_display_connect(nullptr);
  if (display == nullptr) return 3;
  static const wl_registry_listener listener = {.global = take,
                                                .global_remove = [](void*, wl_registry*, std::uint32_t) {}};
  wl_registry_add_listener(wl_display_get_registry(display), &listener, nullptr);
  wl_display_roundtrip(display);
  if (input == nullptr) return 4;
  org_kde_kwin_fake_input_authenticate(input, "test", "presses keys and buttons");
  wl_display_roundtrip(display);
  std::printf("ready\n");
  std::string word;
  while (std::cin >> word) {
    int first = 0;
    int second = 0;
    if (word == "key" && std::cin >> first) {
      press(static_cast<std::uint32_t>(first));
    } else if (word == "click" && std::cin >> first >> second) {
      click(first, second);
    } else {
      return 5;
    }
    wl_display_roundtrip(display);
    std::printf("done\n");
  }
  return 0;
}
