// The menu bar of a desktop whose compositor tells of windows; it counts as hidden while the active one fills the
// screen.
#pragma once

#include <memory>

#include "Platform/running/posix/RunLoop.h"
#include "Platform/session/DesktopFacts.h"
#include "Platform/session/linux/wayland/ToplevelList.h"

namespace halvorn {

class WaylandMenuBar {
 public:
  // The desktop is asked at the installation of the handler.
  WaylandMenuBar(DesktopAddresses desktop, RunLoop& loop);
  ~WaylandMenuBar();

  // False where the compositor does not tell.
  [[nodiscard]] bool installHandler(MenuBarHandler handler);

 private:
  class Watch;

  const DesktopAddresses desktop_;
  RunLoop& loop_;
  std::unique_ptr<Watch> watch_;
};

}  // namespace halvorn
