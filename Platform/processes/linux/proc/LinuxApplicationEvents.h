// Launches and front switches from the window manager, ends from the kernel. Where the desktop does not tell
// of windows, launches come from a look at the process table once a second, and there are no front switches.
#pragma once

#include <memory>

#include "Platform/processes/ApplicationEvents.h"

namespace halvorn {

class MainThread;
class RunLoop;
class RunningApplications;
class WindowSystem;

class LinuxApplicationEvents : public ApplicationEvents {
 public:
  LinuxApplicationEvents(RunningApplications& applications, WindowSystem& windows, RunLoop& loop,
                         MainThread& mainThread);
  // Thread: main.
  ~LinuxApplicationEvents() override;
  LinuxApplicationEvents(const LinuxApplicationEvents&) = delete;
  LinuxApplicationEvents& operator=(const LinuxApplicationEvents&) = delete;

  void installHandler(std::function<void(int kind)> handler) override;

 private:
  class Watching;  // lives on the main thread

  std::shared_ptr<Watching> watching_;
  RunningApplications& applications_;
  MainThread& mainThread_;
};

}  // namespace halvorn
