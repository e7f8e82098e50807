#include "Platform/processes/linux/proc/DesktopSession.h"

#include <unistd.h>

#include <string_view>

#include "Platform/session/linux/WaylandSession.h"

namespace halvorn {
namespace {

// ":0.0", "unix:0" and ":0" name one display.
std::string displayWithoutScreen(std::string display) {
  if (display.starts_with("unix:")) display.erase(0, 4);
  const std::size_t colon = display.rfind(':');
  const std::size_t dot = colon == std::string::npos ? colon : display.find('.', colon);
  if (dot != std::string::npos) display.resize(dot);
  return display;
}

bool areTwo(const std::string& a, const std::string& b) { return !a.empty() && !b.empty() && a != b; }

bool areOne(const std::string& a, const std::string& b) { return !a.empty() && a == b; }

// Whether one is on an X display alone and the other on a compositor alone. A desktop that has both names both
// to whatever it starts.
bool shareNoKindOfDisplay(const DesktopSession& a, const DesktopSession& b) {
  const auto isOnXAlone = [](const DesktopSession& s) {
    return !s.display.empty() && s.waylandSocket.empty();
  };
  const auto isOnWaylandAlone = [](const DesktopSession& s) {
    return s.display.empty() && !s.waylandSocket.empty();
  };
  return (isOnXAlone(a) && isOnWaylandAlone(b)) || (isOnWaylandAlone(a) && isOnXAlone(b));
}

}  // namespace

DesktopSession DesktopSession::from(const std::vector<std::string>& environment) {
  DesktopSession session;
  std::string waylandDisplay;
  std::string runtimeFolder;
  const auto valueOf = [](const std::string& entry, std::string_view prefix, std::string& value) {
    if (entry.starts_with(prefix)) value = entry.substr(prefix.size());
  };
  for (const std::string& entry : environment) {
    valueOf(entry, "XDG_SESSION_ID=", session.sessionId);
    valueOf(entry, "DISPLAY=", session.display);
    valueOf(entry, "WAYLAND_DISPLAY=", waylandDisplay);
    valueOf(entry, "XDG_RUNTIME_DIR=", runtimeFolder);
  }
  session.waylandSocket = waylandSocketPath(waylandDisplay, runtimeFolder);
  session.display = displayWithoutScreen(session.display);
  return session;
}

DesktopSession DesktopSession::ofThisProgram() {
  std::vector<std::string> entries;
  for (char** entry = environ; entry != nullptr && *entry != nullptr; ++entry) entries.emplace_back(*entry);
  return from(entries);
}

bool DesktopSession::isNamed() const {
  return !sessionId.empty() || !display.empty() || !waylandSocket.empty();
}

bool DesktopSession::differsFrom(const DesktopSession& other) const {
  return areTwo(sessionId, other.sessionId) || areTwo(display, other.display) ||
         areTwo(waylandSocket, other.waylandSocket) ||
         (!areOne(sessionId, other.sessionId) && shareNoKindOfDisplay(*this, other));
}

}  // namespace halvorn
