// The layouts of a compositor's seat.
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>
#include <wayland-server.h>
#include <xkbcommon/xkbcommon.h>

#include <atomic>
#include <cstdlib>
#include <mutex>
#include <thread>

#include "Platform/session/linux/LinuxKeyboard.h"
#include "tests/support/Desktop.h"
#include "tests/support/Hands.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/TextPrinting.h"

namespace halvorn {
namespace {

constexpr std::uint16_t kY = 0x10, kA = 0x00, kDigit2 = 0x13;

std::string descriptionOf(const char* layout) {
  xkb_context* const context = xkb_context_new(XKB_CONTEXT_NO_FLAGS);
  const xkb_rule_names names = {
      .rules = "evdev", .model = "pc105", .layout = layout, .variant = "", .options = ""};
  xkb_keymap* const keymap = xkb_keymap_new_from_names(context, &names, XKB_KEYMAP_COMPILE_NO_FLAGS);
  char* const text = xkb_keymap_get_as_string(keymap, XKB_KEYMAP_FORMAT_TEXT_V1);
  std::string result = text;
  std::free(text);
  xkb_keymap_unref(keymap);
  xkb_context_unref(context);
  return result;
}

// A compositor whose seat has a keyboard, or none, as a test likes it.
class SeatOfATest {
 public:
  explicit SeatOfATest(const std::string& path) : display_(wl_display_create()) {
    wl_global_create(display_, &wl_seat_interface, 1, this, bindSeat);
    wl_display_add_socket(display_, path.c_str());
    thread_ = std::thread([this] {
      while (!isOver_) {
        wl_event_loop_dispatch(wl_display_get_event_loop(display_), 10);
        tell();
        wl_display_flush_clients(display_);
      }
    });
  }
  ~SeatOfATest() {
    isOver_ = true;
    thread_.join();
    wl_display_destroy_clients(display_);
    wl_display_destroy(display_);
  }
  SeatOfATest(const SeatOfATest&) = delete;
  SeatOfATest& operator=(const SeatOfATest&) = delete;

  // The keyboard and its layouts; "" for none. `size` is what the program is told of the file.
  void setKeyboard(const std::string& description, std::uint32_t size) {
    const std::lock_guard lock(mutex_);
    description_ = description;
    size_ = size;
    isToBeTold_ = true;
  }
  void setKeyboard(const std::string& description) {
    setKeyboard(description, static_cast<std::uint32_t>(description.size() + 1));
  }

 private:
  static void bindSeat(wl_client* client, void* self, std::uint32_t, std::uint32_t id) {
    static const struct wl_seat_interface requests = {
        .get_pointer = [](wl_client*, wl_resource*, std::uint32_t) {},
        .get_keyboard =
            [](wl_client* asking, wl_resource* seat, std::uint32_t number) {
              auto* const own = static_cast<SeatOfATest*>(wl_resource_get_user_data(seat));
              own->keyboard_ = wl_resource_create(asking, &wl_keyboard_interface, 1, number);
              own->sendLayouts();
            },
        .get_touch = [](wl_client*, wl_resource*, std::uint32_t) {},
        .release = [](wl_client*, wl_resource* seat) { wl_resource_destroy(seat); }};
    auto* const own = static_cast<SeatOfATest*>(self);
    own->seat_ = wl_resource_create(client, &wl_seat_interface, 1, id);
    wl_resource_set_implementation(own->seat_, &requests, self, nullptr);
    own->sendCapabilities();
  }
  void tell() {
    {
      const std::lock_guard lock(mutex_);
      if (!isToBeTold_ || seat_ == nullptr) return;
      isToBeTold_ = false;
    }
    sendCapabilities();
    if (keyboard_ != nullptr) sendLayouts();
  }
  void sendCapabilities() {
    const std::lock_guard lock(mutex_);
    wl_seat_send_capabilities(seat_, description_.empty() ? 0 : WL_SEAT_CAPABILITY_KEYBOARD);
    if (description_.empty()) keyboard_ = nullptr;
  }
  void sendLayouts() {
    const std::lock_guard lock(mutex_);
    const int file = ::memfd_create("layouts", MFD_CLOEXEC);
    const auto length = static_cast<ssize_t>(description_.size() + 1);
    EXPECT_EQ(::write(file, description_.c_str(), description_.size() + 1), length);
    wl_keyboard_send_keymap(keyboard_, WL_KEYBOARD_KEYMAP_FORMAT_XKB_V1, file, size_);
    ::close(file);
  }

  wl_display* const display_;
  wl_resource* seat_ = nullptr;
  wl_resource* keyboard_ = nullptr;
  std::mutex mutex_;  // guards what follows
  std::string description_;
  std::uint32_t size_ = 0;
  bool isToBeTold_ = false;
  std::atomic<bool> isOver_ = false;
  std::thread thread_;
};

class SeatKeyboardOfATest : public testing::Test {
 protected:
  bool becomes(const SeatKeyboard& keyboard, std::uint16_t key, const OptionalText& text) {
    return eventually([&] { return keyboard.translate(key, 0, KeyboardTypes::ansi) == text; });
  }

  TemporaryFolder folder;
  SeatOfATest seat{folder / "wayland"};
};

TEST_F(SeatKeyboardOfATest, KeysTypeWhatTheSeatsLayoutSaysAndFollowItsChanges) {
  seat.setKeyboard(descriptionOf("us"));
  const SeatKeyboard keyboard(folder / "wayland");
  EXPECT_TRUE(keyboard.hasLayout());
  EXPECT_EQ(keyboard.translate(kY, 0, KeyboardTypes::ansi), Text("y"));
  EXPECT_EQ(keyboard.translate(kDigit2, KeyModifier::shift, KeyboardTypes::ansi), Text("@"));
  seat.setKeyboard(descriptionOf("de"));
  EXPECT_TRUE(becomes(keyboard, kY, Text("z")));
  EXPECT_EQ(keyboard.translate(kDigit2, KeyModifier::shift, KeyboardTypes::ansi), Text("\""));
  seat.setKeyboard(descriptionOf("fr"));
  EXPECT_TRUE(becomes(keyboard, kA, Text("q")));
}

TEST_F(SeatKeyboardOfATest, AKeyboardMayComeAndGo) {
  const SeatKeyboard keyboard(folder / "wayland");
  EXPECT_FALSE(keyboard.hasLayout());
  EXPECT_EQ(keyboard.translate(kA, 0, KeyboardTypes::ansi), std::nullopt);
  seat.setKeyboard(descriptionOf("us"));
  EXPECT_TRUE(becomes(keyboard, kA, Text("a")));
  seat.setKeyboard("");
  EXPECT_TRUE(becomes(keyboard, kA, std::nullopt));
  seat.setKeyboard(descriptionOf("de"));
  EXPECT_TRUE(becomes(keyboard, kY, Text("z")));
}

TEST_F(SeatKeyboardOfATest, WhatIsNoDescriptionIsNoLayout) {
  const SeatKeyboard keyboard(folder / "wayland");
  const std::string whole = descriptionOf("us");
  const auto length = static_cast<std::uint32_t>(whole.size() + 1);
  const std::pair<std::string, std::uint32_t> rows[] = {
      {"nonsense", 9}, {whole.substr(0, 1000), 1001}, {whole, 0}, {whole, length + 1}, {whole, 0xFFFFFFFFU}};
  for (const auto& [description, size] : rows) {
    seat.setKeyboard(whole);
    ASSERT_TRUE(becomes(keyboard, kA, Text("a")));
    seat.setKeyboard(description, size);
    EXPECT_TRUE(becomes(keyboard, kA, std::nullopt)) << size;
  }
}

// Where no compositor is, the X server is asked.
TEST(KeyboardOfTheSession, IsTheCompositorsElseTheXServers) {
  const DesktopParts parts{.compositor = Compositor::KWin};
  if (const auto missing = Desktop::missing(parts)) GTEST_SKIP() << *missing;
  Desktop desktop(parts);
  const auto hands = startedHands(desktop);
  const Environment onWayland(
      {{"WAYLAND_DISPLAY", desktop.waylandSocket()}, {"XDG_SESSION_TYPE", "wayland"}, {"DISPLAY", ":65535"}});
  const LinuxKeyboard keyboard(onWayland);
  EXPECT_EQ(keyboard.translate(kA, 0, KeyboardTypes::ansi), Text("a"));
  desktop.compositor()->end(SIGKILL);
  EXPECT_EQ(keyboard.translate(kA, 0, KeyboardTypes::ansi), std::nullopt);
  const Desktop other({.windowManager = false, .bus = false});
  const LinuxKeyboard ofX(Environment({{"DISPLAY", other.displayName()}}));
  EXPECT_EQ(ofX.translate(kA, 0, KeyboardTypes::ansi), Text("a"));
}

}  // namespace
}  // namespace halvorn
