#include "Platform/processes/mac/MacApplicationControl.h"

#import <AppKit/AppKit.h>

#include "Platform/processes/mac/SerialNumbers.h"
#include "Platform/running/mac/Conversions.h"

namespace halvorn {
namespace {

class HeldRunningApplication : public RunningApplication {
 public:
  // Takes over the reference.
  explicit HeldRunningApplication(NSRunningApplication* application) : application_(application) {}
  ~HeldRunningApplication() override { [application_ release]; }
  HeldRunningApplication(const HeldRunningApplication&) = delete;
  HeldRunningApplication& operator=(const HeldRunningApplication&) = delete;

  bool terminate() override {
    return answered(false, [&] { return static_cast<bool>([application_ terminate]); });
  }
  bool forceTerminate() override {
    return answered(false, [&] { return static_cast<bool>([application_ forceTerminate]); });
  }
  bool isTerminated() override {
    return answered(false, [&] { return static_cast<bool>([application_ isTerminated]); });
  }

 private:
  NSRunningApplication* application_;
};

}  // namespace

bool MacApplicationControl::hasRunningApplications() const {
  return NSClassFromString(@"NSRunningApplication") != Nil;
}

std::unique_ptr<RunningApplication> MacApplicationControl::runningApplication(ProcessSerialNumber number) {
  const ::ProcessSerialNumber asked = systemNumber(number);
  pid_t pid = 0;
  if (GetProcessPID(&asked, &pid) != noErr) return nullptr;
  NSRunningApplication* const application = answered<NSRunningApplication*>(
      nil, [&] { return [[NSRunningApplication runningApplicationWithProcessIdentifier:pid] retain]; });
  return application != nil ? std::make_unique<HeldRunningApplication>(application) : nullptr;
}

void MacApplicationControl::setFront(ProcessSerialNumber number, BringForward windows) {
  const ::ProcessSerialNumber asked = systemNumber(number);
  if (windows == BringForward::AllWindows) {
    static_cast<void>(SetFrontProcess(&asked));
  } else {
    static_cast<void>(SetFrontProcessWithOptions(&asked, kSetFrontProcessFrontWindowOnly));
  }
}

void MacApplicationControl::setVisible(ProcessSerialNumber number, Visible visible) {
  const ::ProcessSerialNumber asked = systemNumber(number);
  static_cast<void>(ShowHideProcess(&asked, visible == Visible::Yes ? 1 : 0));
}

void MacApplicationControl::wakeUp(ProcessSerialNumber number) {
  const ::ProcessSerialNumber asked = systemNumber(number);
  static_cast<void>(WakeUpProcess(&asked));
}

std::optional<bool> MacApplicationControl::isHidden(ProcessSerialNumber number) {
  const ::ProcessSerialNumber asked = systemNumber(number);
  pid_t pid = 0;
  if (GetProcessPID(&asked, &pid) != noErr) return std::nullopt;
  return IsProcessVisible(&asked) == 0;
}

}  // namespace halvorn
