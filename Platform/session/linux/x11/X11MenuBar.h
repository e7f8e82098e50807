// The menu bar of an X desktop, which counts as hidden while the active window is a full-screen one.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "Platform/running/posix/RunLoop.h"
#include "Platform/session/DesktopFacts.h"

namespace halvorn {

class X11MenuBar {
 public:
  // The display is connected to at the installation of the handler.
  X11MenuBar(const std::optional<std::string>& displayName, RunLoop& loop);
  ~X11MenuBar();

  [[nodiscard]] bool installHandler(MenuBarHandler handler);

 private:
  class Watch;

  const std::optional<std::string> displayName_;
  RunLoop& loop_;
  std::unique_ptr<Watch> watch_;
};

}  // namespace halvorn
