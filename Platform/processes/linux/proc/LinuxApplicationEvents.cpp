#include "Platform/processes/linux/proc/LinuxApplicationEvents.h"

#include <optional>
#include <tuple>
#include <utility>

#include "Platform/processes/linux/proc/RunningApplications.h"
#include "Platform/processes/linux/proc/WindowSystem.h"
#include "Platform/running/MainThread.h"

namespace halvorn {
namespace {

constexpr double kSecondsBetweenLooks = 1.0;

}  // namespace

class LinuxApplicationEvents::Watching {
 public:
  Watching(RunningApplications& applications, WindowSystem& windows, RunLoop& loop)
      : applications_(applications), windows_(windows), loop_(loop) {}

  void start(std::function<void(int)> handler) {
    handler_ = std::move(handler);
    applications_.findWhatRunsAlready();
    front_ = windows_.activeOwner();
    ends_ = loop_.whenReadable(applications_.endsDescriptor(), [this] {
      applications_.lookForEnds();
      deliver();
    });
    changes_ = windows_.watch(loop_, {[this] { windowsChanged(); }, [this] { activeChanged(); }});
    chooseLooking();
    // What came since the last list was made has been told to nobody.
    applications_.lookAtWindows();
    deliver();
  }

  void deliver() {
    if (!handler_) return;
    for (const auto event : applications_.takeEvents()) {
      handler_(event == RunningApplications::Event::Launched ? kApplicationLaunchedEvent
                                                             : kApplicationTerminatedEvent);
    }
  }

 private:
  // Looking costs wake-ups, so it is done only where nobody tells.
  void chooseLooking() {
    const bool isTold = changes_ && windows_.tellsAllWindows() && applications_.isToldOfEveryEnd();
    if (isTold) {
      look_ = nullptr;
    } else if (!look_) {
      look_ = loop_.every(kSecondsBetweenLooks, [this] {
        std::ignore = applications_.all();
        deliver();
      });
    }
  }
  void windowsChanged() {
    chooseLooking();
    applications_.lookAtWindows();
    deliver();
  }
  void activeChanged() {
    const auto owner = windows_.activeOwner();
    // No window is active for a moment whenever another one becomes so.
    if (!owner || owner == front_ || !applications_.withPid(*owner)) return;
    front_ = owner;
    deliver();
    handler_(kFrontApplicationSwitchedEvent);
  }

  RunningApplications& applications_;
  WindowSystem& windows_;
  RunLoop& loop_;
  std::function<void(int)> handler_;
  std::optional<pid_t> front_;
  std::unique_ptr<RunLoop::Source> ends_;
  std::unique_ptr<RunLoop::Source> changes_;
  std::unique_ptr<RunLoop::Source> look_;
};

LinuxApplicationEvents::LinuxApplicationEvents(RunningApplications& applications, WindowSystem& windows,
                                               RunLoop& loop, MainThread& mainThread)
    : watching_(std::make_shared<Watching>(applications, windows, loop)),
      applications_(applications),
      mainThread_(mainThread) {}

LinuxApplicationEvents::~LinuxApplicationEvents() { applications_.recordEvents(nullptr); }

void LinuxApplicationEvents::installHandler(std::function<void(int kind)> handler) {
  // Whoever asks for one process waits for this; the walk over all of them comes with the next list, or when
  // the main thread has time. This program is no news whether it counts as an application or not.
  std::ignore = applications_.thisProgram();
  const std::weak_ptr<Watching> watching = watching_;
  applications_.recordEvents([watching, &mainThread = mainThread_] {
    mainThread.perform([watching] {
      if (const auto alive = watching.lock()) alive->deliver();
    });
  });
  mainThread_.perform([watching, handler = std::move(handler)] {
    if (const auto alive = watching.lock()) alive->start(handler);
  });
}

}  // namespace halvorn
