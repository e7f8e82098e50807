// The windows of an X desktop, as its window manager publishes them.
//
// Connects at the first question. Without a server, or once it is gone, it answers like NoWindows.
#pragma once

#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "Platform/processes/linux/proc/WindowSystem.h"
#include "Platform/processes/linux/x11/WindowManagerConnection.h"
#include "Platform/processes/linux/x11/WindowOwners.h"

namespace halvorn {

class XWindowSystem : public WindowSystem {
 public:
  // `tellsOnlySome`: the desktop shows windows that X knows nothing of, as Wayland desktops do.
  enum class Coverage { AllWindows, SomeWindows };
  XWindowSystem(std::string displayName, Coverage coverage, const ProcFiles& files);
  ~XWindowSystem() override;

  // The owners of windows with the class (WM_CLASS) that each of those names; nothing of windows that name none.
  struct ClassedOwner {
    pid_t owner = 0;
    std::string windowClass;
  };
  [[nodiscard]] std::vector<ClassedOwner> classedOwners();

  bool tellsAllWindows() override;
  std::vector<pid_t> owners() override;
  bool tellsActiveWindow() override { return tellsAllWindows(); }
  std::optional<pid_t> activeOwner() override;
  std::vector<WindowNumber> windowsOf(const ProcessHold& process) override;
  int closeWindows(const ProcessHold& process) override;
  void activate(const ProcessHold& process, BringForward windows) override;
  void setVisible(const ProcessHold& process, Visible visible) override;
  std::optional<bool> isHidden(const ProcessHold& process) override;
  void sendEmptyMessage(const ProcessHold& process) override;
  std::unique_ptr<RunLoop::Source> watch(RunLoop& loop, Changes changes) override;

 private:
  class Watch;

  // Null without a server.
  [[nodiscard]] WindowManagerConnection* connection();
  // Top-level windows from the bottom of the stack to its top.
  [[nodiscard]] std::vector<xcb_window_t> windows();
  [[nodiscard]] std::vector<xcb_window_t> ownWindows(const ProcessHold& process);
  [[nodiscard]] std::vector<xcb_window_t> windowList(xcb_atom_t property);
  [[nodiscard]] bool isIconified(xcb_window_t window);
  [[nodiscard]] bool supports(xcb_atom_t protocol, xcb_window_t window);
  void send(xcb_window_t destination, xcb_window_t window, xcb_atom_t type, std::uint32_t first,
            std::uint32_t eventMask);
  void finish();

  const std::string displayName_;
  const Coverage coverage_;
  const ProcFiles& files_;
  std::mutex mutex_;  // guards connecting
  bool hasTried_ = false;
  std::unique_ptr<WindowManagerConnection> connection_;
  std::unique_ptr<WindowOwners> owners_;
};

}  // namespace halvorn
