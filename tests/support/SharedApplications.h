// Keeps tests that run as the administrator out of the machine's own applications folder.
#pragma once

#include <optional>
#include <string>

namespace halvorn {

// The administrator may write the applications folder of all users, and tests must not: from now on this
// process and what it starts see an empty one on a medium that cannot be written. For anybody else nothing
// needs to be done. nullopt, or why it cannot be had. Call it before any thread is started.
[[nodiscard]] std::optional<std::string> hideSharedApplications();

// The same; where it cannot be had, this process becomes an ordinary user, who must be able to read the folder.
[[nodiscard]] std::optional<std::string> stayOutOfSharedApplications(const std::string& neededFolder);

}  // namespace halvorn
