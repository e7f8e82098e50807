// Work that several threads take from one queue. Whoever has more than enough puts some of it here, and
// threads are started only once there is some.
#pragma once

#include <sys/types.h>

#include <atomic>
#include <condition_variable>
#include <deque>
#include <functional>
#include <map>
#include <mutex>
#include <thread>
#include <vector>

#include "Platform/files/posix/copy/CopyScratch.h"

namespace halvorn {

class CopyQueue {
 public:
  using Task = std::function<void(CopyScratch&)>;

  CopyQueue() = default;
  ~CopyQueue();
  CopyQueue(const CopyQueue&) = delete;
  CopyQueue& operator=(const CopyQueue&) = delete;

  // How many threads may work, the caller of runAll among them. May be raised while they run.
  void allowWorkers(unsigned count);

  // Whether another thread would have use for more work. Cheap.
  [[nodiscard]] bool isHungry() const { return waiting_.load(std::memory_order_relaxed) < wanted_.load(); }
  void add(Task task);
  // A long task that can wait: taken when there is no other, the longest first, so that all threads end at
  // about the same time. False: enough is waiting, or nobody would share; do it now.
  [[nodiscard]] bool addForLater(off_t size, Task task);
  // Help for somebody who would manage alone: taken when there is nothing else to do,
  // and nobody is hungry less for it.
  void offerHelp(Task task);
  // Whether tasks wait that nobody else does.
  [[nodiscard]] bool hasTasks() const { return waiting_.load(std::memory_order_relaxed) > 0; }
  [[nodiscard]] unsigned workers() const { return allowed_.load(std::memory_order_relaxed); }

  // Runs the task, what it adds, and so on; returns when all is done. A task that throws stops the queue.
  void runAll(const Task& task);

  // What is waiting is dropped; what is running should look at isStopped and end soon.
  void stop();
  [[nodiscard]] bool isStopped() const { return isStopped_.load(std::memory_order_relaxed); }

 private:
  void startWorkerIfUseful();
  [[nodiscard]] bool isIdle() const { return tasks_.empty() && later_.empty() && help_.empty(); }
  [[nodiscard]] Task takeNext();
  void work(CopyScratch& scratch);
  void runGuarded(const Task& task, CopyScratch& scratch);

  std::mutex mutex_;
  std::condition_variable changed_;
  std::deque<Task> tasks_;
  std::multimap<off_t, Task> later_;
  std::deque<Task> help_;
  std::vector<std::thread> threads_;
  unsigned running_ = 0;  // threads that may still add tasks
  std::atomic<unsigned> allowed_ = 1;
  std::atomic<unsigned> waiting_ = 0;
  std::atomic<unsigned> wanted_ = 0;
  std::atomic<bool> isStopped_ = false;
};

}  // namespace halvorn
