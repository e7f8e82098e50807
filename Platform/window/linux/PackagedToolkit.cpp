#include "Platform/window/linux/PackagedToolkit.h"

#include <unistd.h>

#include <array>
#include <cstdlib>
#include <string_view>

namespace halvorn {
namespace {

constexpr char kWindowSystem[] = "QT_QPA_PLATFORM";

// What the package has a part for, and the variables that a session of that kind has.
struct WindowSystem {
  const char* name;
  const char* part;
  std::array<const char*, 2> variables;
};
constexpr std::array<WindowSystem, 2> kWindowSystems = {
    {{"xcb", "platforms/libqxcb.so", {"DISPLAY", "DISPLAY"}},
     {"wayland", "platforms/libqwayland-generic.so", {"WAYLAND_DISPLAY", "WAYLAND_SOCKET"}}}};

std::string valueOf(const char* variable) {
  const char* const value = std::getenv(variable);
  return value != nullptr ? value : "";
}

bool isThere(const WindowSystem& system, const std::string& parts) {
  if (::access((parts + system.part).c_str(), R_OK) != 0) return false;
  return !valueOf(system.variables[0]).empty() || !valueOf(system.variables[1]).empty();
}

// "wayland;xcb", of which the first that works is taken; a name may have options, "xcb:nograb".
bool hasUsable(std::string_view list, const std::string& parts) {
  while (!list.empty()) {
    const std::string_view entry = list.substr(0, list.find(';'));
    list.remove_prefix(entry.size() == list.size() ? entry.size() : entry.size() + 1);
    const std::string_view name = entry.substr(0, entry.find(':'));
    for (const WindowSystem& system : kWindowSystems) {
      if (name == system.name && isThere(system, parts)) return true;
    }
  }
  return false;
}

}  // namespace

std::vector<std::string> removeForeignParts(const std::string& programFolder) {
  std::vector<std::string> removed;
  if (::access((programFolder + "/qt.conf").c_str(), R_OK) != 0) return removed;
  const auto remove = [&](const char* variable) {
    removed.push_back(std::string(variable) + "=" + valueOf(variable));
    ::unsetenv(variable);
  };
  for (const char* const variable : {"QT_PLUGIN_PATH", "QT_QPA_PLATFORM_PLUGIN_PATH"}) {
    if (!valueOf(variable).empty()) remove(variable);
  }
  const std::string chosen = valueOf(kWindowSystem);
  if (!chosen.empty() && !hasUsable(chosen, programFolder + "/../PlugIns/")) remove(kWindowSystem);
  return removed;
}

}  // namespace halvorn
