// What the notification names of the class library are called on the accessibility bus.
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

// All events that mean the notification; empty for one that this desktop does not know.
[[nodiscard]] std::vector<AtSpiEvent> eventsForNotification(const std::string& notification);

}  // namespace halvorn
