// The toolkit's event loop, for adapters that wait for file descriptors.
#pragma once

#include <memory>

#include "Platform/running/posix/RunLoop.h"

namespace halvorn {

class QtRunLoop : public RunLoop {
 public:
  // A QtApplication must exist and outlive it. Thread: main.
  QtRunLoop();
  ~QtRunLoop() override;
  QtRunLoop(const QtRunLoop&) = delete;
  QtRunLoop& operator=(const QtRunLoop&) = delete;

  std::unique_ptr<Source> whenReadable(int descriptor, std::function<void()> callback) override;
  std::unique_ptr<Source> every(double seconds, std::function<void()> callback) override;
};

}  // namespace halvorn
