// Idle time on a compositor that tells when a person has given no input for a while, and when some comes again.
//
// Thread: main.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "Platform/running/Clock.h"
#include "Platform/running/posix/RunLoop.h"

namespace halvorn {

class NotifiedIdleTime {
 public:
  // How long the compositor waits before it tells, in seconds; shorter absences are not noticed.
  static constexpr double kWait = 1.0;

  // The path as waylandSocketPath() tells it. Connects at the first question; what the compositor tells is read in the
  // loop, so that the times are right that count from there.
  NotifiedIdleTime(std::string socketPath, RunLoop& loop, const Clock& clock);
  ~NotifiedIdleTime();

  // 0 while there was input within `kWait`. An absence that began before the first question counts from that one.
  // nullopt in the first second, where the compositor does not tell, while it does not answer, and when it has gone.
  [[nodiscard]] std::optional<std::int64_t> nanosecondsSinceLastInput();

 private:
  class Watch;

  const std::string socketPath_;
  RunLoop& loop_;
  const Clock& clock_;
  bool hasTriedToConnect_ = false;
  std::unique_ptr<Watch> watch_;
};

}  // namespace halvorn
