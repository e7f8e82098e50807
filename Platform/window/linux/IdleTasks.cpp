#include "Platform/window/linux/IdleTasks.h"

#include <utility>

namespace halvorn {

void IdleTasks::add(std::function<void()> task) {
  {
    const std::lock_guard lock(mutex_);
    tasks_.push_back(std::move(task));
  }
  QMetaObject::invokeMethod(
      this, [this] { start(); }, Qt::QueuedConnection);
}

void IdleTasks::timerEvent(QTimerEvent* /*event*/) {
  std::function<void()> task;
  {
    const std::lock_guard lock(mutex_);
    if (!tasks_.empty()) {
      task = std::move(tasks_.front());
      tasks_.pop_front();
    }
    if (tasks_.empty()) stop();
  }
  if (task) task();
}

void IdleTasks::start() {
  const std::lock_guard lock(mutex_);
  if (timer_ == 0 && !tasks_.empty()) timer_ = startTimer(0);
}

void IdleTasks::stop() {
  killTimer(timer_);
  timer_ = 0;
}

}  // namespace halvorn
