#include "Platform/session/linux/wayland/ToplevelList.h"

#include <filesystem>
#include <utility>

#include "Platform/session/linux/wayland/KWinToplevels.h"
#include "Platform/session/linux/wayland/WlrToplevels.h"

namespace halvorn {

std::unique_ptr<ToplevelList> ToplevelList::open(const DesktopAddresses& desktop,
                                                 std::chrono::milliseconds patience) {
  auto connection = WaylandConnection::open(desktop.waylandSocket, patience);
  if (!connection) return nullptr;
  const auto compositor = connection->listener();
  if (auto list = WlrToplevels::over(std::move(connection))) return list;
  if (!compositor) return nullptr;
  const std::filesystem::path folder = std::filesystem::path(desktop.waylandSocket).parent_path();
  auto scripting = KWinScripting::open(desktop.bus, {.listener = *compositor, .folder = folder}, patience);
  return scripting ? KWinToplevels::over(std::move(scripting)) : nullptr;
}

}  // namespace halvorn
