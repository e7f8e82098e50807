// A gate between an object and the tasks that use it on other threads.
//
//   workers_.detach(gate_.wrap([this] { ... }));   // and first thing in the destructor:   gate_.close();
//
// While the gate is open a wrapped task runs as it is. Once it is closed, tasks that have not begun do
// nothing, and none is running any more.
//
// Thread: any; close() never from within a wrapped task.
#pragma once

#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <utility>

namespace halvorn {

class TaskGate {
 public:
  TaskGate() : state_(std::make_shared<State>()) {}  // open
  ~TaskGate() { close(); }                           // as close()
  TaskGate(const TaskGate&) = delete;
  TaskGate& operator=(const TaskGate&) = delete;

  [[nodiscard]] std::function<void()> wrap(std::function<void()> task) {  // it may outlive the gate
    return [state = state_, work = std::move(task)] {
      if (!state->enter()) return;
      work();
      state->leave();
    };
  }

  // Waits for the tasks that run; they must be made to end by other means. May be called again.
  void close() { state_->close(); }

 private:
  // Shared with the tasks, which may begin after the gate has gone.
  class State {
   public:
    bool enter() {
      const std::lock_guard lock(mutex_);
      if (isClosed_) return false;
      ++inside_;
      return true;
    }
    void leave() {
      const std::lock_guard lock(mutex_);
      --inside_;
      changed_.notify_all();
    }
    void close() {
      std::unique_lock lock(mutex_);
      isClosed_ = true;
      changed_.wait(lock, [this] { return inside_ == 0; });
    }

   private:
    std::mutex mutex_;
    std::condition_variable changed_;
    int inside_ = 0;
    bool isClosed_ = false;
  };

  std::shared_ptr<State> state_;
};

}  // namespace halvorn
