#include "Platform/running/posix/PollRunLoop.h"

#include <fcntl.h>
#include <poll.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <utility>

namespace halvorn {
namespace {

double nowSeconds() {
  return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

}  // namespace

struct PollRunLoop::Watch {
  int descriptor = -1;
  std::function<void()> callback;
  bool isActive = true;
};

struct PollRunLoop::Timer {
  double due = 0;
  double interval = 0;  // 0: once
  std::function<void()> callback;
  bool isActive = true;
};

class PollRunLoop::Registration : public RunLoop::Source {
 public:
  explicit Registration(std::function<void()> end) : end_(std::move(end)) {}
  ~Registration() override { end_(); }

 private:
  std::function<void()> end_;
};

PollRunLoop::PollRunLoop() {
  int ends[2] = {-1, -1};
  if (::pipe(ends) != 0) return;
  wakeRead_ = FileDescriptor(ends[0]);
  wakeWrite_ = FileDescriptor(ends[1]);
  for (const int end : ends) {
    ::fcntl(end, F_SETFD, FD_CLOEXEC);
    ::fcntl(end, F_SETFL, O_NONBLOCK);
  }
}

PollRunLoop::~PollRunLoop() = default;

std::unique_ptr<RunLoop::Source> PollRunLoop::whenReadable(int descriptor, std::function<void()> callback) {
  auto watch = std::make_shared<Watch>(Watch{descriptor, std::move(callback)});
  watches_.push_back(watch);
  return std::make_unique<Registration>([this, watch] {
    watch->isActive = false;
    std::erase(watches_, watch);
  });
}

std::unique_ptr<RunLoop::Source> PollRunLoop::every(double seconds, std::function<void()> callback) {
  auto timer = std::make_shared<Timer>(Timer{nowSeconds() + seconds, seconds, std::move(callback)});
  timers_.push_back(timer);
  return std::make_unique<Registration>([this, timer] {
    timer->isActive = false;
    std::erase(timers_, timer);
  });
}

void PollRunLoop::wakeUp() {
  const char byte = 0;
  // A full pipe wakes it as well.
  [[maybe_unused]] const auto written = ::write(wakeWrite_.get(), &byte, 1);
}

void PollRunLoop::perform(std::function<void()> task) {
  {
    const std::lock_guard lock(mutex_);
    tasks_.push_back(std::move(task));
  }
  wakeUp();
}

void PollRunLoop::performAfter(double seconds, std::function<void()> task) {
  perform([this, due = nowSeconds() + seconds, task = std::move(task)]() mutable {
    timers_.push_back(std::make_shared<Timer>(Timer{due, 0, std::move(task)}));
  });
}

void PollRunLoop::performWhenIdle(std::function<void()> task) {
  {
    const std::lock_guard lock(mutex_);
    idleTasks_.push_back(std::move(task));
  }
  wakeUp();
}

bool PollRunLoop::runUntil(const std::function<bool()>& condition, double seconds) {
  const double end = nowSeconds() + seconds;
  while (!condition()) {
    const double left = end - nowSeconds();
    if (left <= 0) return false;
    serveOneRound(left);
  }
  return true;
}

void PollRunLoop::runFor(double seconds) {
  runUntil([] { return false; }, seconds);
}

void PollRunLoop::serveOneRound(double seconds) {
  bool isIdle = false;
  {
    const std::lock_guard lock(mutex_);
    isIdle = idleTasks_.empty() && tasks_.empty();
  }
  const bool isQuiet = !serveDescriptors(isIdle ? secondsToNextTimer(seconds) : 0.0);
  runTasks();
  runDueTimers();
  if (isQuiet) runOneIdleTask();
}

double PollRunLoop::secondsToNextTimer(double limit) {
  for (const auto& timer : timers_) limit = std::min(limit, timer->due - nowSeconds());
  return std::max(limit, 0.0);
}

// True when a source had something to say.
bool PollRunLoop::serveDescriptors(double seconds) {
  const auto watches = watches_;
  std::vector<pollfd> entries = {{wakeRead_.get(), POLLIN, 0}};
  for (const auto& watch : watches) entries.push_back({watch->descriptor, POLLIN, 0});
  const int milliseconds = static_cast<int>(std::min(std::ceil(seconds * 1000), 1e9));
  const int ready = ::poll(entries.data(), entries.size(), milliseconds);
  if (ready > 0) ++rounds_;
  if (ready <= 0) return false;
  if (entries[0].revents != 0) {
    char buffer[256];
    while (::read(wakeRead_.get(), buffer, sizeof buffer) > 0) {
    }
  }
  bool hasServed = false;
  for (std::size_t i = 0; i < watches.size(); ++i) {
    if (entries[i + 1].revents == 0 || !watches[i]->isActive) continue;
    hasServed = true;
    watches[i]->callback();
  }
  return hasServed;
}

void PollRunLoop::runTasks() {
  std::deque<std::function<void()>> tasks;
  {
    const std::lock_guard lock(mutex_);
    std::swap(tasks, tasks_);
  }
  for (const auto& task : tasks) task();
}

void PollRunLoop::runDueTimers() {
  const auto timers = timers_;
  for (const auto& timer : timers) {
    if (!timer->isActive || timer->due > nowSeconds()) continue;
    if (timer->interval > 0) {
      timer->due = nowSeconds() + timer->interval;
    } else {
      std::erase(timers_, timer);
    }
    ++rounds_;
    timer->callback();
  }
}

void PollRunLoop::runOneIdleTask() {
  std::function<void()> task;
  {
    const std::lock_guard lock(mutex_);
    if (idleTasks_.empty() || !tasks_.empty()) return;
    task = std::move(idleTasks_.front());
    idleTasks_.pop_front();
  }
  task();
}

}  // namespace halvorn
