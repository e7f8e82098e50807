#include "Platform/session/linux/x11/StartupNotification.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstring>

#include "Platform/session/linux/x11/DisplayConnection.h"

namespace halvorn {
namespace {

std::string computerName() {
  std::array<char, 256> name{};
  return ::gethostname(name.data(), name.size() - 1) == 0 ? name.data() : "localhost";
}

// Readers take the text behind the last "_TIME" for the time.
std::string newId(const StartupDescription& startup) {
  static std::atomic<unsigned> count = 0;
  std::string id = startup.launcher + "/" + std::to_string(::getpid()) + "-" + std::to_string(count++) + "-" +
                   computerName();
  std::replace(id.begin(), id.end(), ' ', '_');
  return id + "_TIME" + std::to_string(*startup.deedTime);
}

int screenOf(const std::string& displayName) {
  char* host = nullptr;
  int number = 0, screen = 0;
  if (xcb_parse_display(displayName.c_str(), &host, &number, &screen) != 0) adopted(host);
  return screen;
}

std::string quoted(const std::string& value) {
  std::string result = "\"";
  for (const char c : value) {
    if (c == '"' || c == '\\') result += '\\';
    result += c;
  }
  return result + "\"";
}

// A text goes to everybody who watches the root window, in events of 20 bytes; the last one holds the final null.
void broadcast(const DisplayConnection& display, const std::string& text) {
  const xcb_window_t sender = xcb_generate_id(display.get());
  constexpr std::uint32_t kUnmanaged = 1;
  xcb_create_window(display.get(), XCB_COPY_FROM_PARENT, sender, display.root(), -1, -1, 1, 1, 0,
                    XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_OVERRIDE_REDIRECT, &kUnmanaged);
  xcb_client_message_event_t event{};
  event.response_type = XCB_CLIENT_MESSAGE;
  event.format = 8;
  event.window = sender;
  event.type = display.atom("_NET_STARTUP_INFO_BEGIN");
  constexpr std::size_t kPart = sizeof event.data.data8;
  for (std::size_t at = 0; at <= text.size(); at += kPart) {
    std::memset(event.data.data8, 0, kPart);
    std::memcpy(event.data.data8, text.data() + at, std::min(kPart, text.size() - at));
    xcb_send_event(display.get(), 0, display.root(), XCB_EVENT_MASK_PROPERTY_CHANGE,
                   reinterpret_cast<const char*>(&event));
    event.type = display.atom("_NET_STARTUP_INFO");
  }
  xcb_destroy_window(display.get(), sender);
  display.synchronize();
}

}  // namespace

std::optional<std::string> announceStartup(const std::optional<std::string>& displayName,
                                           const StartupDescription& startup) {
  if (!startup.deedTime) return std::nullopt;
  const auto display = DisplayConnection::open(displayName);
  if (!display) return std::nullopt;
  const std::string id = newId(startup);
  broadcast(*display, "new: ID=" + quoted(id) + " NAME=" + quoted(startup.program) +
                          " SCREEN=" + std::to_string(screenOf(*displayName)));
  return display->isUsable() ? std::optional(id) : std::nullopt;
}

}  // namespace halvorn
