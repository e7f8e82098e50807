#include "Platform/running/posix/PosixClock.h"

#include <chrono>
#include <thread>

namespace halvorn {

Date PosixClock::now() const {
  const auto sinceEpoch = std::chrono::system_clock::now().time_since_epoch();
  return Date{std::chrono::duration<double>(sinceEpoch).count()};
}

double PosixClock::monotonicSeconds() const {
  return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

void PosixClock::sleep(double seconds) {
  if (seconds > 0) std::this_thread::sleep_for(std::chrono::duration<double>(seconds));
}

}  // namespace halvorn
