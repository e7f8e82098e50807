// Ending applications by signals through held descriptors, and moving their
// windows by way of the window manager.
#pragma once

#include "Platform/processes/ApplicationControl.h"

namespace halvorn {

class Clock;
class RunningApplications;
class WindowSystem;

class LinuxApplicationControl : public ApplicationControl {
 public:
  LinuxApplicationControl(RunningApplications& applications, WindowSystem& windows, const Clock& clock);

  bool hasRunningApplications() const override { return true; }
  // Asked to end, an application gets its windows closed, and SIGTERM when it does not answer that; each once in
  // its life: a second signal makes some programs drop what they were about to save.
  std::unique_ptr<RunningApplication> runningApplication(ProcessSerialNumber number) override;
  void setFront(ProcessSerialNumber number, BringForward windows) override;
  void setVisible(ProcessSerialNumber number, Visible visible) override;
  void wakeUp(ProcessSerialNumber number) override;
  std::optional<bool> isHidden(ProcessSerialNumber number) override;

 private:
  RunningApplications& applications_;
  WindowSystem& windows_;
  const Clock& clock_;
};

}  // namespace halvorn
