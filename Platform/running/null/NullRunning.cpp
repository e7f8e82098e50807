#include "Platform/running/null/NullRunning.h"

#include <cstdio>
#include <system_error>
#include <utility>

namespace halvorn {
namespace {

using std::chrono::steady_clock;

steady_clock::duration durationOf(double seconds) {
  constexpr double longest = 1e9;  // no more fits, and nobody waits for longer
  const std::chrono::duration<double> duration(seconds < longest ? seconds : longest);
  return std::chrono::ceil<steady_clock::duration>(duration);
}

std::function<void()> takeFirst(std::deque<std::function<void()>>& tasks) {
  std::function<void()> task = std::move(tasks.front());
  tasks.pop_front();
  return task;
}

}  // namespace

Date StandardClock::now() const {
  const auto sinceEpoch = std::chrono::system_clock::now().time_since_epoch();
  return {std::chrono::duration<double>(sinceEpoch).count()};
}

double StandardClock::monotonicSeconds() const {
  return std::chrono::duration<double>(steady_clock::now().time_since_epoch()).count();
}

void StandardClock::sleep(double seconds) {
  if (seconds > 0) std::this_thread::sleep_for(durationOf(seconds));
}

void StandardWorkers::detach(std::function<void()> task) {
  {
    const std::lock_guard lock(mutex_);
    try {
      threads_.emplace_back(task);
      return;
    } catch (const std::system_error&) {
      // No thread is to be had: late is better than never.
    }
  }
  task();
}

void StandardWorkers::finish() {
  for (;;) {
    std::list<std::thread> last;
    {
      const std::lock_guard lock(mutex_);
      if (threads_.empty()) return;
      last.splice(last.begin(), threads_, threads_.begin());
    }
    last.front().join();
  }
}

void StandardMainThread::perform(std::function<void()> task) {
  const std::lock_guard lock(mutex_);
  tasks_.push_back(std::move(task));
  posted_.notify_one();
}

void StandardMainThread::performAfter(double seconds, std::function<void()> task) {
  const std::lock_guard lock(mutex_);
  delayed_.emplace(steady_clock::now() + durationOf(seconds > 0 ? seconds : 0), std::move(task));
  posted_.notify_one();
}

void StandardMainThread::performWhenIdle(std::function<void()> task) {
  const std::lock_guard lock(mutex_);
  idleTasks_.push_back(std::move(task));
  posted_.notify_one();
}

std::function<void()> StandardMainThread::next(Moment end) {
  std::unique_lock lock(mutex_);
  for (;;) {
    if (!tasks_.empty()) return takeFirst(tasks_);
    const auto due = delayed_.begin();
    if (due != delayed_.end() && due->first <= steady_clock::now()) {
      std::function<void()> task = std::move(due->second);
      delayed_.erase(due);
      return task;
    }
    if (!idleTasks_.empty()) return takeFirst(idleTasks_);
    if (due == delayed_.end() || due->first > end) return nullptr;
    posted_.wait_until(lock, due->first);
  }
}

void StandardMainThread::run(const std::function<bool()>& isOver, double seconds) {
  const Moment end = steady_clock::now() + durationOf(seconds);
  while (!isOver() && steady_clock::now() <= end) {
    const std::function<void()> task = next(end);
    if (!task) break;
    task();
  }
  const std::lock_guard lock(mutex_);
  tasks_.clear();
  delayed_.clear();
  idleTasks_.clear();
}

bool StandardMainThread::hasTasks() const {
  const std::lock_guard lock(mutex_);
  return !tasks_.empty() || !delayed_.empty() || !idleTasks_.empty();
}

StandardErrorStreamLog::StandardErrorStreamLog(const Text& programName)
    : start_(escapedForLog(programName).bytes() + ": ") {}

void StandardErrorStreamLog::write(const Text& line) const {
  // One call for the whole line, so that no other thread writes into it.
  std::fputs((start_ + line.bytes() + "\n").c_str(), stderr);
}

}  // namespace halvorn
