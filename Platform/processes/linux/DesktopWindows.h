// The windows of a desktop, whichever kind it is: those of its X server; or those of its compositor, and of the X
// programs that it takes in. Nothing is connected before a window is asked for.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "Platform/processes/linux/proc/JointWindows.h"
#include "Platform/processes/linux/wayland/ToplevelWindows.h"
#include "Platform/processes/linux/x11/XWindowSystem.h"

namespace halvorn {

class DesktopWindows {
 public:
  struct Places {
    std::string display = {};        // of the X server; "" for none
    bool isWayland = false;          // see isWaylandSession()
    std::string waylandSocket = {};  // as waylandSocketPath() tells it
    std::string bus = {};            // the address of the session's; "" for none
  };
  // The others must outlive this object.
  DesktopWindows(const Places& places, const ProcFiles& files, const Bundles& bundles, const Log& log)
      : x_(places.display,
           places.isWayland ? XWindowSystem::Coverage::SomeWindows : XWindowSystem::Coverage::AllWindows,
           files),
        toplevels_({places.waylandSocket, places.bus}, files, bundles, log, [this] { return guests(); }),
        windows_(places.isWayland ? static_cast<WindowSystem&>(both_) : x_) {}

  [[nodiscard]] WindowSystem& windows() { return windows_; }

 private:
  [[nodiscard]] std::vector<ToplevelWindows::Guest> guests() {
    std::vector<ToplevelWindows::Guest> result;
    for (auto& [pid, name] : x_.classedOwners()) result.push_back({pid, std::move(name)});
    return result;
  }

  XWindowSystem x_;
  ToplevelWindows toplevels_;
  JointWindows both_{toplevels_, x_};
  WindowSystem& windows_;
};

}  // namespace halvorn
