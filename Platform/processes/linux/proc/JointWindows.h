// Two window systems of one desktop as one: that of the compositor, and that of the X programs that it takes in.
#pragma once

#include "Platform/processes/linux/proc/WindowSystem.h"

namespace halvorn {

// Where both could answer, or activate, the first one does. Otherwise no window is of both.
class JointWindows : public WindowSystem {
 public:
  // They must outlive this object.
  JointWindows(WindowSystem& first, WindowSystem& second) : first_(first), second_(second) {}

  // Told by the first one alone: the second one is a part of the desktop.
  bool tellsAllWindows() override { return first_.tellsAllWindows(); }
  std::vector<pid_t> owners() override;
  bool tellsActiveWindow() override { return first_.tellsActiveWindow(); }
  std::optional<pid_t> activeOwner() override;
  std::vector<WindowNumber> windowsOf(const ProcessHold& process) override;
  int closeWindows(const ProcessHold& process) override;
  void activate(const ProcessHold& process, BringForward windows) override;
  void setVisible(const ProcessHold& process, Visible visible) override;
  std::optional<bool> isHidden(const ProcessHold& process) override;
  void sendEmptyMessage(const ProcessHold& process) override;
  std::unique_ptr<RunLoop::Source> watch(RunLoop& loop, Changes changes) override;

 private:
  WindowSystem& first_;
  WindowSystem& second_;
};

}  // namespace halvorn
