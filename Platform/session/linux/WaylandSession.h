// How a Wayland session is told.
#pragma once

#include <string>

#include "Platform/session/linux/Environment.h"

namespace halvorn {

// Whether a Wayland compositor shows this session, also where an X server is its guest: what such a server
// tells is a part of the truth only. Everything that treats such sessions differently asks this. Thread: any.
[[nodiscard]] bool isWaylandSession(const Environment& environment);

// Where the compositor of such a session listens; "" for another session, and where its folder is not told.
// No link is in the path, so that two of them are the same place when they are equal.
[[nodiscard]] std::string waylandSocketPath(const Environment& environment);
// The same from WAYLAND_DISPLAY, which may be a whole path, and XDG_RUNTIME_DIR. "" when they name no place.
[[nodiscard]] std::string waylandSocketPath(const std::string& display, const std::string& runtimeFolder);

}  // namespace halvorn
