// A thread per task.
//
//   PosixWorkers workers;
//   workers.detach([&] { work(); });
//   workers.finish();   // while everything that the tasks use is still there
//
// Destroying it does not wait: a task that still runs then would use what has been destroyed before, or
// after, by the order of somebody's members. A thread that was not waited for by finish() ends the program
// (std::terminate), as with std::thread itself.
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
  ~PosixWorkers() override = default;
  PosixWorkers(const PosixWorkers&) = delete;
  PosixWorkers& operator=(const PosixWorkers&) = delete;

  // Where the system refuses a thread, the task runs before this returns: late is better than never.
  void detach(std::function<void()> task) override;
  // Waits for all tasks, those that are started meanwhile too. Thread: any but those of the tasks.
  void finish();

 private:
  struct Worker {
    std::thread thread;
    std::shared_ptr<std::atomic<bool>> isDone;
  };

  std::mutex mutex_;
  std::list<Worker> workers_;  // under mutex_
};

}  // namespace halvorn
