// The idle hint of the session manager.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "Platform/running/Clock.h"
#include "Platform/session/IdleTime.h"

namespace halvorn {

class BusClient;

class LogindIdleTime : public IdleTime {
 public:
  // On the system's bus; without an address nothing is told. The clock must count as the system's monotonic
  // one does.
  LogindIdleTime(const std::optional<std::string>& busAddress, const Clock& clock);
  ~LogindIdleTime() override;

  // Coarse: 0 until the desktop takes the person for absent, which is minutes after the last input, then the
  // time since.
  std::optional<std::int64_t> nanosecondsSinceLastInput() override;

 private:
  std::unique_ptr<BusClient> bus_;
  const Clock& clock_;
};

}  // namespace halvorn
