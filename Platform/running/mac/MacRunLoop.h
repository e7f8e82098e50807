// The run loop of the main thread, for what hangs its own events on it.
#pragma once

#include "Platform/running/posix/RunLoop.h"

namespace halvorn {

class MacRunLoop : public RunLoop {
 public:
  [[nodiscard]] std::unique_ptr<Source> whenReadable(int descriptor, std::function<void()> callback) override;
  [[nodiscard]] std::unique_ptr<Source> every(double seconds, std::function<void()> callback) override;
  // Serves the loop until the condition holds, asked after each thing done; false when that many seconds were over first.
  static bool runUntil(const std::function<bool()>& condition, double seconds);
};

}  // namespace halvorn
