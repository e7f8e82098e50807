#include "Platform/window/linux/QtRunLoop.h"

#include <QCoreApplication>
#include <QEvent>
#include <QObject>
#include <QSocketNotifier>
#include <QTimer>
#include <QTimerEvent>
#include <chrono>
#include <deque>
#include <mutex>
#include <utility>

namespace halvorn {
namespace {

// Holds a toolkit object that calls back. A source may end in its own call-back, while the object still
// works: then the object goes a little later, and the call-back that runs holds itself.
template <typename Object>
class ObjectSource : public RunLoop::Source {
 public:
  explicit ObjectSource(std::unique_ptr<Object> object) : object_(std::move(object)) {}
  ~ObjectSource() override {
    object_->disconnect();
    stop(*object_);
    object_.release()->deleteLater();
  }
  ObjectSource(const ObjectSource&) = delete;
  ObjectSource& operator=(const ObjectSource&) = delete;

 private:
  static void stop(QSocketNotifier& notifier) { notifier.setEnabled(false); }
  static void stop(QTimer& timer) { timer.stop(); }

  std::unique_ptr<Object> object_;
};

std::function<void()> holdingItself(std::function<void()> callback) {
  return [shared = std::make_shared<std::function<void()>>(std::move(callback))] {
    const auto held = shared;
    (*held)();
  };
}

}  // namespace

// A timer of no time fires when no event waits; one task for each such moment.
class QtRunLoop::IdleTasks : public QObject {
 public:
  void add(std::function<void()> task) {
    {
      const std::lock_guard lock(mutex_);
      tasks_.push_back(std::move(task));
    }
    QMetaObject::invokeMethod(
        this, [this] { start(); }, Qt::QueuedConnection);
  }

 protected:
  void timerEvent(QTimerEvent*) override {
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

 private:
  void start() {
    const std::lock_guard lock(mutex_);
    if (timer_ == 0 && !tasks_.empty()) timer_ = startTimer(0);
  }
  void stop() {
    killTimer(timer_);
    timer_ = 0;
  }

  std::mutex mutex_;
  std::deque<std::function<void()>> tasks_;
  int timer_ = 0;
};

QtRunLoop::QtRunLoop() : idleTasks_(std::make_unique<IdleTasks>()) {}

QtRunLoop::~QtRunLoop() {
  // Sources that ended after the last event: nobody else deletes them any more.
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

std::unique_ptr<RunLoop::Source> QtRunLoop::whenReadable(int descriptor, std::function<void()> callback) {
  auto notifier = std::make_unique<QSocketNotifier>(descriptor, QSocketNotifier::Read);
  QObject::connect(notifier.get(), &QSocketNotifier::activated, notifier.get(),
                   holdingItself(std::move(callback)));
  return std::make_unique<ObjectSource<QSocketNotifier>>(std::move(notifier));
}

std::unique_ptr<RunLoop::Source> QtRunLoop::every(double seconds, std::function<void()> callback) {
  auto timer = std::make_unique<QTimer>();
  timer->setInterval(std::chrono::milliseconds(static_cast<long long>(seconds * 1000.0)));
  QObject::connect(timer.get(), &QTimer::timeout, timer.get(), holdingItself(std::move(callback)));
  timer->start();
  return std::make_unique<ObjectSource<QTimer>>(std::move(timer));
}

void QtRunLoop::performWhenIdle(std::function<void()> task) { idleTasks_->add(std::move(task)); }

}  // namespace halvorn
