// The toolkit's event loop, for adapters that wait for file descriptors or for quiet moments.
#pragma once

#include <memory>

#include "Platform/running/IdleQueue.h"
#include "Platform/running/posix/RunLoop.h"

namespace halvorn {

class QtRunLoop : public RunLoop, public IdleQueue {
 public:
  // A QtApplication must exist and outlive it. Thread: main.
  QtRunLoop();
  // Tasks that still wait for a quiet moment are dropped.
  ~QtRunLoop() override;
  QtRunLoop(const QtRunLoop&) = delete;
  QtRunLoop& operator=(const QtRunLoop&) = delete;

  std::unique_ptr<Source> whenReadable(int descriptor, std::function<void()> callback) override;
  std::unique_ptr<Source> every(double seconds, std::function<void()> callback) override;
  void performWhenIdle(std::function<void()> task) override;

 private:
  class IdleTasks;
  std::unique_ptr<IdleTasks> idleTasks_;
};

}  // namespace halvorn
