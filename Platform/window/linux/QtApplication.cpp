#include "Platform/window/linux/QtApplication.h"

#include <unistd.h>

#include <QApplication>
#include <QDeadlineTimer>
#include <QInputEvent>
#include <QThread>
#include <QTimer>
#include <QWidget>
#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "Platform/color/linux/Palettes.h"
#include "Platform/window/linux/IdleTasks.h"
#include "Platform/window/linux/LauncherEntry.h"
#include "Platform/window/linux/QtText.h"
#include "Platform/window/linux/ToolkitsWayland.h"
#include "Platform/window/linux/pictures/QtImage.h"

namespace halvorn {
namespace {

// A window that comes up covered by others may never be painted.
constexpr double kLongestToBePainted = 1.0;

// Watches what people do with the keyboard and the mouse, and for the first window to be painted.
class EventWatch : public QObject {
 public:
  [[nodiscard]] bool optionKey() const { return optionKey_; }
  [[nodiscard]] std::uint32_t deedTime() const { return deedTime_; }
  [[nodiscard]] bool isShown() const { return isShown_; }
  std::function<void()> shown;
  std::function<void()> askedToQuit;
  void tellShown() {
    if (std::exchange(isShown_, true)) return;
    if (shown) shown();
  }

 protected:
  // What sets something off. Whoever lets go of the keys or moves the mouse on has not taken it back.
  static bool isDeed(QEvent::Type type) {
    return type == QEvent::KeyPress || type == QEvent::MouseButtonPress ||
           type == QEvent::MouseButtonRelease || type == QEvent::TouchBegin || type == QEvent::TouchEnd;
  }
  static bool isAltItself(const QEvent& event) {
    return event.type() == QEvent::KeyPress && static_cast<const QKeyEvent&>(event).key() == Qt::Key_Alt;
  }
  // Whoever holds the key down, perhaps since the window that was there before this one, has not pressed it again.
  // The flag tells only of repeats that the toolkit read in one go; a server lets go of the key and presses it at one
  // and the same time for each, which no finger does.
  bool isHeldReturn(const QEvent& event) {
    if (event.type() != QEvent::KeyPress && event.type() != QEvent::KeyRelease) return false;
    const auto& key = static_cast<const QKeyEvent&>(event);
    if (key.key() != Qt::Key_Return && key.key() != Qt::Key_Enter) return false;
    if (event.type() == QEvent::KeyRelease) returnReleased_ = key.timestamp();
    const bool isSameMoment = key.timestamp() != 0 && key.timestamp() == returnReleased_;
    return event.type() == QEvent::KeyPress && (key.isAutoRepeat() || isSameMoment);
  }
  bool eventFilter(QObject*, QEvent* event) override {
    if (isHeldReturn(*event)) return true;
    // The session manager's word. The toolkit would ask the windows first, and stay when one refuses.
    if (event->type() == QEvent::Quit && askedToQuit) {
      askedToQuit();
      return true;
    }
    if (event->type() == QEvent::Shortcut) optionKey_ = false;  // Alt belongs to the letter of the button
    if (isDeed(event->type())) {
      const auto* deed = static_cast<QInputEvent*>(event);
      optionKey_ = deed->modifiers().testFlag(Qt::AltModifier) && !isAltItself(*event);
      // The toolkit hands the server's 32 bits through; what programs make up themselves has none.
      if (deed->timestamp() != 0) deedTime_ = static_cast<std::uint32_t>(deed->timestamp());
    } else if (event->type() == QEvent::Paint) {
      tellShown();
    }
    return false;
  }

 private:
  std::atomic<bool> optionKey_ = false;
  std::atomic<std::uint32_t> deedTime_ = 0;
  quint64 returnReleased_ = 0;
  bool isShown_ = false;
};

// On the main thread, where all that waits is done. Another thread never comes back to the toolkit, which would end
// the program there and then.
[[noreturn]] void endByExit() {
  const bool isMain = qApp == nullptr || QThread::currentThread() == qApp->thread();
  if (isMain) std::exit(EXIT_FAILURE);
  QMetaObject::invokeMethod(
      qApp, [] { std::exit(EXIT_FAILURE); }, Qt::QueuedConnection);
  for (;;) ::pause();
}

// The toolkit's remarks are no lines of the log; what ends the program is. The toolkit would do that in ways that
// leave everything undone, by a signal or, when the compositor has gone, with a warning and at once; what waits for
// the end (BeforeExit) shall be done.
void keepQuiet(QtMsgType type, const QMessageLogContext&, const QString& message) {
  const bool isLast = type == QtFatalMsg || (type == QtWarningMsg && hasLostCompositor());
  if (type == QtCriticalMsg || isLast) std::fprintf(stderr, "%s\n", qUtf8Printable(message));
  if (isLast) endByExit();
}

}  // namespace

struct QtApplication::Parts {
  explicit Parts(const Text& programPath) : path(programPath.bytes()) {
    // Whether the program ends is not decided here.
    if (isOurs) QApplication::setQuitOnLastWindowClosed(false);
    qApp->installEventFilter(&watch);
  }

  ~Parts() {
    if (qApp != nullptr) qApp->removeEventFilter(&watch);
    if (isOurs) qInstallMessageHandler(before);
  }

  // One style everywhere: the look of the window is ours to switch, and a desktop's
  // own style would be loaded first.
  std::unique_ptr<QApplication> made() {
    QApplication::setStyle(QStringLiteral("fusion"));
    return std::make_unique<QApplication>(count, arguments);
  }

  // A program that has made one keeps it as it is: its look, when it ends, what it says.
  const bool isOurs = QCoreApplication::instance() == nullptr;
  QtMessageHandler before = isOurs ? qInstallMessageHandler(keepQuiet) : nullptr;
  std::string path;
  int count = 1;
  char* arguments[2] = {path.data(), nullptr};
  const std::unique_ptr<QApplication> application = isOurs ? made() : nullptr;
  EventWatch watch;
  QObject tasks;  // what waits on it is dropped with it
  IdleTasks idleTasks;
  std::vector<std::function<void()>> whenShown;
  bool terminated = false;
};

QtApplication::QtApplication(const Text& programPath) : parts_(std::make_unique<Parts>(programPath)) {
  if (parts_->isOurs) parts_->watch.askedToQuit = [this] { terminate(); };
}

QtApplication::~QtApplication() = default;

bool QtApplication::isOwn() const { return parts_->isOurs; }

int QtApplication::run() { return parts_->terminated ? 0 : QApplication::exec(); }

bool QtApplication::runUntil(const std::function<bool()>& condition, double seconds) {
  const QDeadlineTimer end(std::chrono::nanoseconds(static_cast<long long>(std::min(seconds, 1e9) * 1e9)));
  while (!condition()) {
    if (end.hasExpired()) return false;
    QTimer wakeUp;
    wakeUp.setSingleShot(true);
    wakeUp.start(end.remainingTimeAsDuration() < std::chrono::hours(1) ? static_cast<int>(end.remainingTime())
                                                                       : 3'600'000);
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
  }
  return true;
}

void QtApplication::terminate() {
  parts_->terminated = true;
  // Not quit(): that would ask the windows again whether they may be closed.
  QApplication::exit(0);
}

bool QtApplication::isTerminated() const { return parts_->terminated; }

void QtApplication::setSessionEnded(std::function<void()> callback) {
  parts_->watch.askedToQuit = [this, ended = std::move(callback)] {
    ended();
    terminate();
  };
}

void QtApplication::setApplicationIcon(const ImagePointer& icon) {
  // The sizes for task bars take longer to decode than the window takes to be painted.
  performWhenShown([icon] {
    const QtImage* picture = qtImage(icon);
    QApplication::setWindowIcon(picture != nullptr ? picture->icon() : QIcon());
  });
}

void QtApplication::performWhenShown(std::function<void()> task) {
  if (parts_->watch.isShown()) return perform(std::move(task));
  parts_->whenShown.push_back(std::move(task));
  if (parts_->whenShown.size() > 1) return;
  parts_->watch.shown = [this] {
    for (auto& waiting : std::exchange(parts_->whenShown, {})) perform(std::move(waiting));
  };
  performAfter(kLongestToBePainted, [this] { parts_->watch.tellShown(); });
}

void QtApplication::requestUserAttention() {
  if (QApplication::activeWindow() != nullptr) return;
  for (QWidget* window : QApplication::topLevelWidgets()) {
    if (window->windowType() == Qt::Window && window->isVisible()) QApplication::alert(window);
  }
}

void QtApplication::setIdentifier(const Text& identifier) {
  QGuiApplication::setDesktopFileName(toQString(identifier));
}

void QtApplication::setProgress(std::optional<double> share) { showProgressInLauncher(share); }

void QtApplication::beep() { QApplication::beep(); }

bool QtApplication::currentEventHasOptionKey() const { return parts_->watch.optionKey(); }

std::optional<std::uint32_t> QtApplication::timeOfLastDeed() const {
  const std::uint32_t time = parts_->watch.deedTime();
  return time != 0 ? std::optional(time) : std::nullopt;
}

void QtApplication::perform(std::function<void()> task) {
  QMetaObject::invokeMethod(&parts_->tasks, std::move(task), Qt::QueuedConnection);
}

void QtApplication::performAfter(double seconds, std::function<void()> task) {
  constexpr double kLongest = 2'000'000.0;  // the timer counts milliseconds in 31 bits
  const auto delay = std::chrono::milliseconds(
      static_cast<long long>(seconds > 0 ? std::min(seconds, kLongest) * 1000.0 + 0.999 : 0.0));
  perform([this, delay, waiting = std::move(task)] {
    QTimer::singleShot(delay, Qt::PreciseTimer, &parts_->tasks, waiting);
  });
}

void QtApplication::performWhenIdle(std::function<void()> task) { parts_->idleTasks.add(std::move(task)); }

}  // namespace halvorn
