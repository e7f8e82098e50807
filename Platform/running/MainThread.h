// The main thread's queue.
#pragma once

#include <functional>

namespace halvorn {

class MainThread {
 public:
  virtual ~MainThread() = default;
  // Runs the task on the main thread, after all tasks posted before it; never inside this call. Thread: any.
  virtual void perform(std::function<void()> task) = 0;
  // Runs the task on the main thread once that many seconds have passed. Thread: any.
  virtual void performAfter(double seconds, std::function<void()> task) = 0;
  // Runs the task on the main thread when no event waits there any more; in the order of these calls, never
  // inside one. Thread: any.
  virtual void performWhenIdle(std::function<void()> task) = 0;
};

}  // namespace halvorn
