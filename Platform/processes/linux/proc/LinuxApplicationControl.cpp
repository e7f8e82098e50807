#include "Platform/processes/linux/proc/LinuxApplicationControl.h"

#include <signal.h>

#include <utility>

#include "Platform/processes/linux/proc/RunningApplications.h"
#include "Platform/processes/linux/proc/WindowSystem.h"
#include "Platform/running/Clock.h"

namespace halvorn {
namespace {

class HeldRunningApplication : public RunningApplication {
 public:
  HeldRunningApplication(HeldApplicationPointer application, WindowSystem& windows, const Clock& clock)
      : application_(std::move(application)), windows_(windows), clock_(clock) {}

  bool terminate() override {
    if (isTerminated()) return false;
    application_->terminateRequest().carryOn(application_->hold, windows_, clock_.monotonicSeconds());
    return true;
  }
  bool forceTerminate() override { return application_->hold.sendSignal(SIGKILL) || !isTerminated(); }
  bool isTerminated() override { return application_->hold.hasEnded(); }

 private:
  const HeldApplicationPointer application_;
  WindowSystem& windows_;
  const Clock& clock_;
};

}  // namespace

LinuxApplicationControl::LinuxApplicationControl(RunningApplications& applications, WindowSystem& windows,
                                                 const Clock& clock)
    : applications_(applications), windows_(windows), clock_(clock) {}

std::unique_ptr<RunningApplication> LinuxApplicationControl::runningApplication(ProcessSerialNumber number) {
  auto application = applications_.withNumber(number);
  if (!application) return nullptr;
  return std::make_unique<HeldRunningApplication>(std::move(application), windows_, clock_);
}

void LinuxApplicationControl::setFront(ProcessSerialNumber number, BringForward windows) {
  if (const auto application = applications_.withNumber(number))
    windows_.activate(application->hold, windows);
}

void LinuxApplicationControl::setVisible(ProcessSerialNumber number, Visible visible) {
  if (const auto application = applications_.withNumber(number)) {
    windows_.setVisible(application->hold, visible);
  }
}

void LinuxApplicationControl::wakeUp(ProcessSerialNumber number) {
  const auto application = applications_.withNumber(number);
  if (!application) return;
  application->hold.sendSignal(SIGCONT);
  windows_.sendEmptyMessage(application->hold);
}

std::optional<bool> LinuxApplicationControl::isHidden(ProcessSerialNumber number) {
  const auto application = applications_.withNumber(number);
  return application ? windows_.isHidden(application->hold) : std::nullopt;
}

}  // namespace halvorn
