// Who owns the windows on the desktop, and what the window manager does with them for us.
#pragma once

#include <sys/types.h>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "Platform/processes/ApplicationControl.h"
#include "Platform/running/posix/RunLoop.h"

namespace halvorn {

// Thread: any but for watch(). Windows of other machines and windows whose owner is not certain belong to
// nobody here.
class WindowSystem {
 public:
  virtual ~WindowSystem() = default;

  // Whether every top-level window of the desktop is told of. Without that the answers below may leave some
  // out.
  [[nodiscard]] virtual bool tellsAllWindows() = 0;
  // The processes that own top-level windows, each once.
  [[nodiscard]] virtual std::vector<pid_t> owners() = 0;
  // The owner of the active window; nullopt when there is none or it is not known.
  [[nodiscard]] virtual std::optional<pid_t> activeOwner() = 0;

  // For the windows of one process. A window that cannot be asked to close is left alone.
  virtual void closeWindows(pid_t pid) = 0;
  virtual void activate(pid_t pid, BringForward windows) = 0;
  virtual void setVisible(pid_t pid, Visible visible) = 0;
  // Something to read that means nothing.
  virtual void sendEmptyMessage(pid_t pid) = 0;

  struct Changes {
    std::function<void()> windowsChanged;  // windows may have come or gone, or tellsAllWindows() changed
    std::function<void()> activeChanged;   // after windowsChanged where both did
  };
  // Calls back until the result is destroyed. Null when there is nothing to watch. Thread: main.
  [[nodiscard]] virtual std::unique_ptr<RunLoop::Source> watch(RunLoop& loop, Changes changes) = 0;
};

// A desktop that does not tell.
class NoWindows : public WindowSystem {
 public:
  bool tellsAllWindows() override { return false; }
  std::vector<pid_t> owners() override { return {}; }
  std::optional<pid_t> activeOwner() override { return std::nullopt; }
  void closeWindows(pid_t) override {}
  void activate(pid_t, BringForward) override {}
  void setVisible(pid_t, Visible) override {}
  void sendEmptyMessage(pid_t) override {}
  std::unique_ptr<RunLoop::Source> watch(RunLoop&, Changes) override { return nullptr; }
};

}  // namespace halvorn
