// How an X desktop is told that a program starts because of something the person has just done: the program gets
// an id that carries the time of that deed, and its window comes to the front unless the person has turned to
// something else since. In the words of the desktops' startup notification protocol, version 0.1.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace halvorn {

struct StartupDescription {
  std::string launcher;                   // "HalvornInstaller"
  std::string program;                    // shown while it starts: "Sample"
  std::optional<std::uint32_t> deedTime;  // the server's time of what the person did last
};

// Announces the start; the id for the program's DESKTOP_STARTUP_ID, another one each time. nullopt without a
// deed, a display or an X server that answers. Connects for itself. Thread: any.
[[nodiscard]] std::optional<std::string> announceStartup(const std::optional<std::string>& displayName,
                                                         const StartupDescription& startup);

}  // namespace halvorn
