// Whether a name on a message bus is this session's compositor's. The session bus may be that of another desktop.
#pragma once

#include <sys/types.h>

#include <optional>
#include <string>

#include "Platform/session/linux/bus/BusConnection.h"

namespace halvorn {

// The name on the bus that its owner alone ever has. `listener` is who opened the compositor's socket: the compositor
// itself, or a program that started it. nullopt where nobody has the name, and where its owner is neither of them.
[[nodiscard]] std::optional<std::string> compositorWithName(BusConnection& bus, const std::string& name,
                                                            pid_t listener);

}  // namespace halvorn
