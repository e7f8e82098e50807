// Time. Nothing else in the program reads a clock or sleeps.
#pragma once

#include "Core/Date.h"

namespace halvorn {

class Clock {
 public:
  virtual ~Clock() = default;
  // The wall clock. Thread: any.
  [[nodiscard]] virtual Date now() const = 0;
  // Seconds from a fixed point, never going back, for measuring. Thread: any.
  [[nodiscard]] virtual double monotonicSeconds() const = 0;
  // Blocks the calling thread for at least that many seconds; 0 or less returns at once.
  virtual void sleep(double seconds) = 0;
};

}  // namespace halvorn
