// A main thread whose queue a test runs by hand, and workers that run at once or when told.
#pragma once

#include <algorithm>
#include <deque>
#include <functional>
#include <utility>
#include <vector>

#include "Platform/running/MainThread.h"
#include "Platform/running/Workers.h"

namespace halvorn {

class FakeMainThread : public MainThread {
 public:
  struct Delayed {
    double seconds = 0.0;
    std::function<void()> task;
  };

  void perform(std::function<void()> task) override { queue.push_back(std::move(task)); }
  void performAfter(double seconds, std::function<void()> task) override {
    delayed.push_back({seconds, std::move(task)});
  }

  void performWhenIdle(std::function<void()> task) override { idleTasks.push_back(std::move(task)); }

  // Runs what is queued, and what that queues in turn.
  void runAll() { run(queue); }
  // The same for what waits for a quiet moment.
  void becomeIdle() { run(idleTasks); }
  // Runs the delayed tasks that are due after that many seconds, soonest first.
  void runDelayed(double seconds) {
    std::vector<Delayed> due;
    std::erase_if(delayed, [&](const Delayed& entry) {
      if (entry.seconds > seconds) return false;
      due.push_back(entry);
      return true;
    });
    std::stable_sort(due.begin(), due.end(),
                     [](const auto& a, const auto& b) { return a.seconds < b.seconds; });
    for (const Delayed& entry : due) entry.task();
    runAll();
  }

  std::deque<std::function<void()>> queue;
  std::vector<Delayed> delayed;
  std::deque<std::function<void()>> idleTasks;

 private:
  static void run(std::deque<std::function<void()>>& tasks) {
    while (!tasks.empty()) {
      const auto task = std::move(tasks.front());
      tasks.pop_front();
      task();
    }
  }
};

class FakeWorkers : public Workers {
 public:
  void detach(std::function<void()> task) override { tasks.push_back(std::move(task)); }
  void runAll() {
    while (!tasks.empty()) {
      const auto task = std::move(tasks.front());
      tasks.pop_front();
      task();
    }
  }
  std::deque<std::function<void()>> tasks;
};

}  // namespace halvorn
