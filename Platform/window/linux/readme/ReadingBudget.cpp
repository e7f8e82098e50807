#include "Platform/window/linux/readme/ReadingBudget.h"

#include <ctime>
#include <utility>

namespace halvorn {

ReadingBudget::ReadingBudget(double seconds, Meter meter)
    : meter_(std::move(meter)), end_(meter_() + seconds) {}

double ReadingBudget::ofThisThread() {
  timespec time = {};
  ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

}  // namespace halvorn
