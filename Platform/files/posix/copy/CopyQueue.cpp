#include "Platform/files/posix/copy/CopyQueue.h"

#include <exception>
#include <iterator>
#include <memory>
#include <utility>

namespace halvorn {

namespace {
constexpr unsigned kTasksPerWorker = 2;
// Each keeps its folder open.
constexpr std::size_t kMostForLater = 32;
}  // namespace

CopyQueue::~CopyQueue() {
  for (std::thread& thread : threads_) thread.join();
}

void CopyQueue::allowWorkers(unsigned count) {
  const std::lock_guard lock(mutex_);
  allowed_ = count;
  wanted_ = count > 1 ? count * kTasksPerWorker : 0;
}

void CopyQueue::add(Task task) {
  const std::lock_guard lock(mutex_);
  tasks_.push_back(std::move(task));
  ++waiting_;
  startWorkerIfUseful();
  changed_.notify_one();
}

bool CopyQueue::addForLater(off_t size, Task task) {
  const std::lock_guard lock(mutex_);
  if (allowed_ == 1 || later_.size() >= kMostForLater) return false;
  later_.emplace(size, std::move(task));
  startWorkerIfUseful();
  changed_.notify_one();
  return true;
}

void CopyQueue::offerHelp(Task task) {
  const std::lock_guard lock(mutex_);
  if (allowed_ == 1) return;
  help_.push_back(std::move(task));
  startWorkerIfUseful();
  changed_.notify_one();
}

// The lock is held here and in the next two.
void CopyQueue::startWorkerIfUseful() {
  if (threads_.size() + 1 >= allowed_) return;
  try {
    threads_.emplace_back([this, scratch = std::make_unique<CopyScratch>()] { work(*scratch); });
    ++running_;
  } catch (const std::exception&) {
    // Whoever is here already does it alone.
    allowed_ = static_cast<unsigned>(threads_.size()) + 1;
  }
}

CopyQueue::Task CopyQueue::takeNext() {
  if (tasks_.empty() && !later_.empty()) {
    const auto longest = std::prev(later_.end());
    Task task = std::move(longest->second);
    later_.erase(longest);
    return task;
  }
  std::deque<Task>& from = tasks_.empty() ? help_ : tasks_;
  Task task = std::move(from.front());
  from.pop_front();
  if (&from == &tasks_) --waiting_;
  return task;
}

void CopyQueue::runAll(const Task& task) {
  {
    const std::lock_guard lock(mutex_);
    ++running_;
  }
  CopyScratch scratch;
  runGuarded(task, scratch);
  work(scratch);
  for (std::thread& thread : threads_) thread.join();
  threads_.clear();
}

// Takes tasks until there are none and nobody is left who could add one.
void CopyQueue::work(CopyScratch& scratch) {
  std::unique_lock lock(mutex_);
  while (true) {
    if (!isIdle()) {
      {
        const Task task = takeNext();
        lock.unlock();
        runGuarded(task, scratch);
      }
      lock.lock();
      continue;
    }
    if (--running_ == 0) changed_.notify_all();
    changed_.wait(lock, [&] { return !isIdle() || running_ == 0; });
    if (isIdle()) return;
    ++running_;
  }
}

void CopyQueue::runGuarded(const Task& task, CopyScratch& scratch) {
  try {
    if (!isStopped()) task(scratch);
  } catch (const std::exception&) {
    stop();
  }
}

void CopyQueue::stop() { isStopped_.store(true, std::memory_order_relaxed); }

}  // namespace halvorn
