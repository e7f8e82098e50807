#include "Platform/processes/linux/proc/LinuxApplicationControl.h"

#include <signal.h>

#include <utility>

#include "Platform/processes/linux/proc/RunningApplications.h"
#include "Platform/processes/linux/proc/WindowSystem.h"

namespace halvorn {
namespace {

class HeldRunningApplication : public RunningApplication {
 public:
  HeldRunningApplication(HeldApplicationPointer application, WindowSystem& windows)
      : application_(std::move(application)), windows_(windows) {}

  bool terminate() override {
    if (isTerminated()) return false;
    if (!application_->takeTerminateRequest()) return true;
    windows_.closeWindows(application_->hold);
    // A program that ended at the closing has followed the request, and one that
    // may not be signalled was asked.
    application_->hold.sendSignal(SIGTERM);
    return true;
  }
  bool forceTerminate() override { return application_->hold.sendSignal(SIGKILL) || !isTerminated(); }
  bool isTerminated() override { return application_->hold.hasEnded(); }

 private:
  const HeldApplicationPointer application_;
  WindowSystem& windows_;
};

}  // namespace

LinuxApplicationControl::LinuxApplicationControl(RunningApplications& applications, WindowSystem& windows)
    : applications_(applications), windows_(windows) {}

std::unique_ptr<RunningApplication> LinuxApplicationControl::runningApplication(ProcessSerialNumber number) {
  auto application = applications_.withNumber(number);
  if (!application) return nullptr;
  return std::make_unique<HeldRunningApplication>(std::move(application), windows_);
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

}  // namespace halvorn
