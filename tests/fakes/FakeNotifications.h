// Quiet moments that a test makes.
#pragma once

#include <deque>
#include <functional>
#include <utility>

#include "Platform/running/IdleQueue.h"

namespace halvorn {

class FakeIdleQueue : public IdleQueue {
 public:
  void performWhenIdle(std::function<void()> task) override { tasks.push_back(std::move(task)); }

  // Runs what is queued, and what that queues in turn.
  void becomeIdle() {
    while (!tasks.empty()) {
      const auto task = std::move(tasks.front());
      tasks.pop_front();
      task();
    }
  }

  std::deque<std::function<void()>> tasks;
};

}  // namespace halvorn
