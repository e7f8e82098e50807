// How a Wayland session is told.
#pragma once

#include "Platform/session/linux/Environment.h"

namespace halvorn {

// Whether a Wayland compositor shows this session, also where an X server is its guest: what such a server
// tells is a part of the truth only. Everything that treats such sessions differently asks this. Thread: any.
[[nodiscard]] bool isWaylandSession(const Environment& environment);

}  // namespace halvorn
