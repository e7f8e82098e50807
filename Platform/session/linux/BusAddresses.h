// Where the message buses of a desktop are.
#pragma once

#include <optional>
#include <string>

#include "Platform/session/linux/Environment.h"

namespace halvorn {

// nullopt when the session has no bus; none is started.
[[nodiscard]] std::optional<std::string> sessionBusAddress(const Environment& environment);
[[nodiscard]] std::optional<std::string> systemBusAddress(const Environment& environment);

}  // namespace halvorn
