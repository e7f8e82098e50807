#include "Platform/window/linux/QtRunLoop.h"

#include <QCoreApplication>
#include <QEvent>
#include <QObject>
#include <QSocketNotifier>
#include <QTimer>
#include <chrono>
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
    // The callback may end the source that owns it.
    // NOLINTNEXTLINE(performance-unnecessary-copy-initialization)
    const auto held = shared;
    (*held)();
  };
}

}  // namespace

QtRunLoop::QtRunLoop() = default;

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

}  // namespace halvorn
