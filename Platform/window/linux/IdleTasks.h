// Tasks for the quiet moments of the toolkit's loop.
#pragma once

#include <QObject>
#include <deque>
#include <functional>
#include <mutex>

namespace halvorn {

// A timer of no time fires when no event waits; one task for each such moment.
class IdleTasks : public QObject {
 public:
  // Thread: any.
  void add(std::function<void()> task);

 protected:
  void timerEvent(QTimerEvent* event) override;

 private:
  void start();
  void stop();

  std::mutex mutex_;
  std::deque<std::function<void()>> tasks_;
  int timer_ = 0;
};

}  // namespace halvorn
