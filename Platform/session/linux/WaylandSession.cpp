#include "Platform/session/linux/WaylandSession.h"

#include <filesystem>
#include <system_error>

namespace halvorn {

bool isWaylandSession(const Environment& environment) {
  return environment.value("WAYLAND_DISPLAY") || environment.value("XDG_SESSION_TYPE") == "wayland";
}

std::string waylandSocketPath(const Environment& environment) {
  if (!isWaylandSession(environment)) return "";
  // Where nothing is said, every client takes this name.
  return waylandSocketPath(environment.value("WAYLAND_DISPLAY").value_or("wayland-0"),
                           environment.value("XDG_RUNTIME_DIR").value_or(""));
}

std::string waylandSocketPath(const std::string& display, const std::string& runtimeFolder) {
  if (display.empty()) return "";
  const bool isWhole = display.front() == '/';
  if (!isWhole && (runtimeFolder.empty() || runtimeFolder.front() != '/')) return "";
  const std::string path = isWhole ? display : runtimeFolder + "/" + display;
  std::error_code failed;
  const auto resolved = std::filesystem::weakly_canonical(path, failed);
  return failed ? path : resolved.string();
}

}  // namespace halvorn
