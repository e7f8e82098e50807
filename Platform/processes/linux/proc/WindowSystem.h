// Who owns the windows on the desktop, and what the window manager does with them for us.
#pragma once

#include <sys/types.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "Platform/processes/ApplicationControl.h"
#include "Platform/running/posix/RunLoop.h"

namespace halvorn {

class ProcessHold;

// Thread: any but for watch(). Windows of other machines and windows whose owner is
// not certain belong to nobody here.
class WindowSystem {
 public:
  virtual ~WindowSystem() = default;

  // Whether every top-level window of the desktop is told of. Without that the
  // answers below may leave some out.
  [[nodiscard]] virtual bool tellsAllWindows() = 0;
  // The processes that own top-level windows, each once.
  [[nodiscard]] virtual std::vector<pid_t> owners() = 0;
  // Whether the desktop tells which of all its windows is active.
  [[nodiscard]] virtual bool tellsActiveWindow() = 0;
  // The owner of the active window; nullopt when there is none or it is not known.
  [[nodiscard]] virtual std::optional<pid_t> activeOwner() = 0;

  // Of no other window while this one exists.
  using WindowNumber = std::uint64_t;

  // For the windows of one process; nothing is told or done once it has ended, whoever has its id then.
  [[nodiscard]] virtual std::vector<WindowNumber> windowsOf(const ProcessHold& process) = 0;
  // How many were asked. A window that cannot be asked to close is left alone.
  virtual int closeWindows(const ProcessHold& process) = 0;
  virtual void activate(const ProcessHold& process, BringForward windows) = 0;
  virtual void setVisible(const ProcessHold& process, Visible visible) = 0;
  // Whether none of its windows is shown; nullopt when it has none here, or that is not told.
  [[nodiscard]] virtual std::optional<bool> isHidden(const ProcessHold& process) = 0;
  // Something to read that means nothing.
  virtual void sendEmptyMessage(const ProcessHold& process) = 0;

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
  bool tellsActiveWindow() override { return false; }
  std::optional<pid_t> activeOwner() override { return std::nullopt; }
  std::vector<WindowNumber> windowsOf(const ProcessHold&) override { return {}; }
  int closeWindows(const ProcessHold&) override { return 0; }
  void activate(const ProcessHold&, BringForward) override {}
  void setVisible(const ProcessHold&, Visible) override {}
  std::optional<bool> isHidden(const ProcessHold&) override { return std::nullopt; }
  void sendEmptyMessage(const ProcessHold&) override {}
  std::unique_ptr<RunLoop::Source> watch(RunLoop&, Changes) override { return nullptr; }
};

}  // namespace halvorn
