// Threads for work that must not hold up the main thread.
#pragma once

#include <functional>

namespace halvorn {

class Workers {
 public:
  virtual ~Workers() = default;
  // Runs the task on a thread of its own. Whoever owns the implementation waits for the tasks while
  // everything they use is still there. Thread: any.
  virtual void detach(std::function<void()> task) = 0;
};

}  // namespace halvorn
