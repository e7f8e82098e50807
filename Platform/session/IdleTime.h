// How long the person has been away.
#pragma once

#include <cstdint>
#include <optional>

namespace halvorn {

class IdleTime {
 public:
  virtual ~IdleTime() = default;
  // Since the last key, button or movement anywhere on this desktop; nullopt when the system does not tell.
  // Thread: main. Never waits long.
  [[nodiscard]] virtual std::optional<std::int64_t> nanosecondsSinceLastInput() = 0;
};

}  // namespace halvorn
