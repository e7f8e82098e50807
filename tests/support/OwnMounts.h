// Mounts that nobody else sees.
#pragma once

#include <optional>
#include <string>

namespace halvorn {

// From now on this process and what it starts may mount what they like, and nobody else sees it. Where the
// administrator has no right to mount, as in most containers, in a user name space of its own, in which every
// account is what it was before. nullopt, or why that cannot be had and where it can. A second call does
// nothing. Call it before any thread is started.
[[nodiscard]] std::optional<std::string> enterOwnMounts();

// The same answer, without entering.
[[nodiscard]] std::optional<std::string> whyNoOwnMounts();

// In a user name space the administrator has not all of his rights. Whether device nodes can be made in the folder, and
// whether a program that was made slow can be made quick again.
[[nodiscard]] bool canMakeDevices(const std::string& folder);
[[nodiscard]] bool canMakeQuickAgain();

}  // namespace halvorn
