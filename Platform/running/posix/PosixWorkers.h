// A thread per task.
#pragma once

#include <atomic>
#include <list>
#include <memory>
#include <mutex>
#include <thread>

#include "Platform/running/Workers.h"

namespace halvorn {

class PosixWorkers : public Workers {
 public:
  PosixWorkers() = default;
  // Waits for what still runs.
  ~PosixWorkers() override;
  PosixWorkers(const PosixWorkers&) = delete;
  PosixWorkers& operator=(const PosixWorkers&) = delete;

  // Where the system refuses a thread, the task runs before this returns: late is better than never.
  void detach(std::function<void()> task) override;

 private:
  struct Worker {
    std::thread thread;
    std::shared_ptr<std::atomic<bool>> isDone;
  };

  std::mutex mutex_;
  std::list<Worker> workers_;  // under mutex_
};

}  // namespace halvorn
