// The quiet moments of the main thread.
#pragma once

#include <functional>

namespace halvorn {

class IdleQueue {
 public:
  virtual ~IdleQueue() = default;
  // Runs the task on the main thread when no event waits there any more; in the order of the calls, never
  // inside one. Thread: any.
  virtual void performWhenIdle(std::function<void()> task) = 0;
};

}  // namespace halvorn
