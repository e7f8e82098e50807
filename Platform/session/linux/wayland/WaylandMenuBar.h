// The menu bar of a desktop whose compositor tells of windows; it counts as hidden while the active one fills the
// screen.
#pragma once

#include <memory>
#include <string>

#include "Platform/running/posix/RunLoop.h"
#include "Platform/session/DesktopFacts.h"

namespace halvorn {

class WaylandMenuBar {
 public:
  // The path as waylandSocketPath() tells it. The compositor is connected to at the installation of the handler.
  WaylandMenuBar(std::string socketPath, RunLoop& loop);
  ~WaylandMenuBar();

  // False where the compositor does not tell.
  [[nodiscard]] bool installHandler(MenuBarHandler handler);

 private:
  class Watch;

  const std::string socketPath_;
  RunLoop& loop_;
  std::unique_ptr<Watch> watch_;
};

}  // namespace halvorn
