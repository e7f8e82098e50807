// Idle time as an X server counts it for its screen saver.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "Platform/session/linux/Environment.h"

namespace halvorn {

class DisplayConnection;

class X11IdleTime {
 public:
  // Connects at the first question.
  explicit X11IdleTime(const std::optional<std::string>& displayName);
  ~X11IdleTime();

  [[nodiscard]] std::optional<std::int64_t> nanosecondsSinceLastInput();

 private:
  const std::optional<std::string> displayName_;
  bool hasTriedToConnect_ = false;
  std::unique_ptr<DisplayConnection> display_;
};

// The X server that sees all input of this session. nullopt on a Wayland desktop: the server there is a
// guest, which sees what goes to its own windows and would take the person for absent.
[[nodiscard]] std::optional<std::string> displayThatSeesAllInput(const Environment& environment);

}  // namespace halvorn
