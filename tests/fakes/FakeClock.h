// A clock that only moves when somebody sleeps or a test turns it.
#pragma once

#include <functional>
#include <vector>

#include "Platform/running/Clock.h"

namespace halvorn {

class FakeClock : public Clock {
 public:
  Date now() const override { return Date{1'700'000'000.0 + seconds_}; }
  double monotonicSeconds() const override { return seconds_; }
  void sleep(double seconds) override {
    slept.push_back(seconds);
    advance(seconds);
  }

  // Moves time on; a sleeping thread's world moves with it: `onAdvance` sees each new time.
  void advance(double seconds) {
    if (seconds > 0) seconds_ += seconds;
    if (onAdvance) onAdvance(seconds_);
  }

  std::vector<double> slept;
  std::function<void(double)> onAdvance;

 private:
  double seconds_ = 0.0;
};

}  // namespace halvorn
