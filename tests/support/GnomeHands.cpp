// Keyboard and mouse of GNOME's shell without devices, by its interface for help from afar. Says "ready", then does what
// each line of input says and answers "done":
//
//   key CODE      presses the key with that code of the kernel's, and lets it go
//   click X Y     presses and lets go there, in pixels of the screen
#include <linux/input-event-codes.h>

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <string>
#include <thread>

#include "Platform/session/linux/bus/BusConnection.h"

namespace halvorn {
namespace {

constexpr char kName[] = "org.gnome.Mutter.RemoteDesktop";
constexpr double kPatience = 10;
constexpr std::chrono::milliseconds kSomePictures{100};
constexpr double kFarAway = 10000;  // further than a screen is wide

class Hands {
 public:
  explicit Hands(const std::string& bus) : bus_(BusConnection::open(bus, kPatience)) {}

  [[nodiscard]] bool reach() {
    if (!bus_) return false;
    const CallResult made =
        bus_->call(methodCall({kName, "/org/gnome/Mutter/RemoteDesktop", kName, "CreateSession"}), kPatience);
    const auto* const reply = std::get_if<BusMessage>(&made);
    const char* path = nullptr;
    if (reply == nullptr ||
        !dbus_message_get_args(reply->get(), nullptr, DBUS_TYPE_OBJECT_PATH, &path, DBUS_TYPE_INVALID))
      return false;
    session_ = path;
    // Each device is made when it is first used, and programs are told of it a moment later.
    return called(message("Start")) && moved(kFarAway, kFarAway) && press(KEY_LEFTSHIFT);
  }
  [[nodiscard]] bool press(std::uint32_t key) {
    return pressed("NotifyKeyboardKeycode", DBUS_TYPE_UINT32, key);
  }
  // Out of the lower right corner, where nothing happens to whoever comes there: places are not told, only ways.
  [[nodiscard]] bool click(double x, double y, double width, double height) {
    if (!moved(kFarAway, kFarAway) || !moved(x - (width - 1), y - (height - 1))) return false;
    // Which window lies below is looked up with the next picture, and is not told.
    std::this_thread::sleep_for(kSomePictures);
    return pressed("NotifyPointerButton", DBUS_TYPE_INT32, BTN_LEFT);
  }

 private:
  [[nodiscard]] BusMessage message(const char* member) const {
    return methodCall({kName, session_, std::string(kName) + ".Session", member});
  }
  [[nodiscard]] bool called(const BusMessage& message) {
    const CallResult result = bus_->call(message, kPatience);
    return std::holds_alternative<BusMessage>(result);
  }
  [[nodiscard]] bool moved(double x, double y) {
    const BusMessage motion = message("NotifyPointerMotionRelative");
    dbus_message_append_args(motion.get(), DBUS_TYPE_DOUBLE, &x, DBUS_TYPE_DOUBLE, &y, DBUS_TYPE_INVALID);
    return called(motion);
  }
  [[nodiscard]] bool pressed(const char* member, int type, std::uint32_t code) {
    for (const dbus_bool_t isDown : {1U, 0U}) {
      const BusMessage change = message(member);
      dbus_message_append_args(change.get(), type, &code, DBUS_TYPE_BOOLEAN, &isDown, DBUS_TYPE_INVALID);
      if (!called(change)) return false;
    }
    return true;
  }

  const std::unique_ptr<BusConnection> bus_;
  std::string session_;
};

int serve() {
  const char* const bus = std::getenv("DBUS_SESSION_BUS_ADDRESS");
  Hands hands(bus != nullptr ? bus : "");
  if (!hands.reach()) return 3;
  std::printf("ready\n");
  std::string word;
  while (std::cin >> word) {
    int first = 0;
    int second = 0;
    bool isDone = false;
    if (word == "key" && std::cin >> first) {
      isDone = hands.press(static_cast<std::uint32_t>(first));
    } else if (word == "click" && std::cin >> first >> second) {
      isDone = hands.click(first, second, 1280, 800);
    }
    if (!isDone) return 5;
    std::printf("done\n");
  }
  return 0;
}

}  // namespace
}  // namespace halvorn

int main() {
  std::setvbuf(stdout, nullptr, _IONBF, 0);
  return halvorn::serve();
}
