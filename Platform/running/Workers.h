// Threads for work that must not hold up the main thread.
#pragma once

#include <functional>

namespace halvorn {

class Workers {
 public:
  virtual ~Workers() = default;
  // Runs the task on a thread of its own. The implementation's destructor waits for what still runs. Thread:
  // any.
  virtual void detach(std::function<void()> task) = 0;
};

}  // namespace halvorn
