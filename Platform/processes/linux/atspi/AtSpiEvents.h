// What the notification names of the class library are called on the accessibility bus, by toolkit.
// Why: docs/decisions/021-the-desktop-is-asked.md
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace halvorn {

struct AtSpiEvent {
  std::string registered;              // as the registry knows it: "object:state-changed:focused"
  std::string interface;               // of its signal: "org.a11y.atspi.Event.Object"
  std::string member;                  // "StateChanged"
  std::string detail;                  // its first argument; "" for any
  std::optional<std::int32_t> number;  // its second one, where only that value counts
};

// What a program's interface is made with. Toolkits send different events, and of many none.
enum class AtSpiToolkit { Qt, Gtk, Other };
// From the name that the program's root tells: "Qt", "gtk".
[[nodiscard]] AtSpiToolkit toolkitNamed(const std::string& name);

// All events by which programs of that toolkit tell what the notification means; empty when they never do. Of
// another toolkit: those of all that are known.
[[nodiscard]] std::vector<AtSpiEvent> eventsForNotification(const std::string& notification,
                                                            AtSpiToolkit toolkit);
// The names of the class library that some toolkit tells, each once.
[[nodiscard]] std::vector<std::string> notificationsOf(AtSpiToolkit toolkit);

}  // namespace halvorn
