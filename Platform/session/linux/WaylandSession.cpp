#include "Platform/session/linux/WaylandSession.h"

namespace halvorn {

bool isWaylandSession(const Environment& environment) {
  return environment.value("WAYLAND_DISPLAY") || environment.value("XDG_SESSION_TYPE") == "wayland";
}

}  // namespace halvorn
