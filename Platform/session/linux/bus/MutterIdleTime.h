// Idle time as GNOME's compositor counts it, over the session bus.
//
// Thread: main.
#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "Platform/session/linux/wayland/ToplevelList.h"

namespace halvorn {

class BusConnection;

class MutterIdleTime {
 public:
  // Connects at the first question.
  explicit MutterIdleTime(DesktopAddresses desktop);
  ~MutterIdleTime();

  // To the millisecond. nullopt on other desktops, and where it was not answered in time; who was silent once is not
  // waited for again until that answer has come.
  [[nodiscard]] std::optional<std::int64_t> nanosecondsSinceLastInput();

 private:
  class Monitor;

  const DesktopAddresses desktop_;
  bool hasTriedToConnect_ = false;
  std::unique_ptr<Monitor> monitor_;
};

}  // namespace halvorn
