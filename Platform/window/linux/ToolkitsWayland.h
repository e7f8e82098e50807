// What is asked of a compositor over the toolkit's own connection, which alone has windows and clicks.
// Why: docs/decisions/030-wayland.md
#pragma once

#include <optional>
#include <string>

namespace halvorn {

// Whether the toolkit was on a compositor that has gone, or has ended the conversation. Thread: any.
[[nodiscard]] bool hasLostCompositor();

// A token for the program's XDG_ACTIVATION_TOKEN: the compositor's leave to come to the front because of what the
// person has just done. nullopt where the toolkit is on no compositor or that gives none. `application` is what the
// program will call itself. Waits for a second at most, for the main thread too. Thread: any.
[[nodiscard]] std::optional<std::string> waylandActivationToken(const std::string& application);

}  // namespace halvorn
