// The windows of a desktop whose compositor tells of them.
//
// Some compositors tell whose each window is; what an X program says of itself counts where the X server agrees. Others
// tell what application a window is of, and no process. A window is a process's then only where exactly one client of
// the compositor, or one X program that it has taken in, is called like its application. All others are nobody's, and
// with one such window on the desktop tellsAllWindows() is false.
//
// The windows of X programs are told and activated here: the compositor heeds nobody else. What those programs can
// be asked for themselves is left to the X server's side.
//
// Connects at the first question; the log then has a line where the desktop tells nothing. Without such a compositor, once it is gone, and while it does not answer, it
// answers like NoWindows.
// Why: docs/decisions/030-wayland.md
#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "Core/Log.h"
#include "Platform/processes/linux/proc/WindowSystem.h"
#include "Platform/processes/linux/wayland/ClientNames.h"
#include "Platform/session/linux/wayland/ToplevelList.h"

namespace halvorn {

class ToplevelWindows : public WindowSystem {
 public:
  // X programs that the compositor has taken in, with what their windows say they are; each as often as it likes.
  struct Guest {
    pid_t pid = 0;
    std::string name;
  };
  using Guests = std::function<std::vector<Guest>()>;
  // The others must outlive this object.
  ToplevelWindows(DesktopAddresses desktop, const ProcFiles& files, const Bundles& bundles, const Log& log,
                  Guests guests);
  ~ToplevelWindows() override;

  bool tellsAllWindows() override;
  std::vector<pid_t> owners() override;
  // Also of a compositor that does not answer at the moment: what is active now nobody else knows.
  bool tellsActiveWindow() override;
  std::optional<pid_t> activeOwner() override;
  std::vector<WindowNumber> windowsOf(const ProcessHold& process) override;
  int closeWindows(const ProcessHold& process) override;
  // The window that was active last counts as the front one.
  void activate(const ProcessHold& process, BringForward windows) override;
  void setVisible(const ProcessHold& process, Visible visible) override;
  std::optional<bool> isHidden(const ProcessHold& process) override;
  // There is none: a compositor passes nothing on.
  void sendEmptyMessage(const ProcessHold& /*process*/) override {}
  std::unique_ptr<RunLoop::Source> watch(RunLoop& loop, Changes changes) override;

 private:
  class Watch;
  struct OwnedWindow {
    Toplevel window;
    std::optional<pid_t> owner;
    bool isGuests = false;
  };
  [[nodiscard]] bool connectLocked();
  // Those that were active later behind the others. Nothing is told where the compositor did not answer.
  [[nodiscard]] std::optional<std::vector<OwnedWindow>> windowsLocked();
  [[nodiscard]] OwnedWindow owned(Toplevel window, const std::vector<Guest>& guests) const;
  enum class Whose { ClientsAlone, GuestsToo };
  [[nodiscard]] std::vector<Toplevel> windowsOfLocked(const ProcessHold& process, Whose whose);

  const DesktopAddresses desktop_;
  const Log& log_;
  std::mutex mutex_;  // guards what follows
  bool hasTried_ = false;
  std::unique_ptr<ToplevelList> list_;
  ClientNames clients_;
  const Guests guests_;
};

}  // namespace halvorn
