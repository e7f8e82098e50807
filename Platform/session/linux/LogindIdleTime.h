// The idle hint of the session manager.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "Platform/running/Clock.h"

namespace halvorn {

class BusClient;

class LogindIdleTime {
 public:
  // On the system's bus; without an address nothing is told. The clock must count as
  // the system's monotonic one does.
  LogindIdleTime(const std::optional<std::string>& busAddress, const Clock& clock);
  ~LogindIdleTime();

  // Coarse: 0 until the desktop takes the person for absent, which is minutes after the
  // last input, then the time since.
  [[nodiscard]] std::optional<std::int64_t> nanosecondsSinceLastInput();

 private:
  std::unique_ptr<BusClient> bus_;
  const Clock& clock_;
};

}  // namespace halvorn
