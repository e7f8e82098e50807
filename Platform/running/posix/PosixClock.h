// The system's clocks.
#pragma once

#include "Platform/running/Clock.h"

namespace halvorn {

class PosixClock : public Clock {
 public:
  Date now() const override;
  double monotonicSeconds() const override;
  void sleep(double seconds) override;
};

}  // namespace halvorn
