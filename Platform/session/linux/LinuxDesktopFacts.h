// The desktop of a Linux session: its compositor or X server, whichever it has, and the session manager.
#pragma once

#include <optional>
#include <string>

#include "Platform/session/DesktopFacts.h"
#include "Platform/session/linux/LogindIdleTime.h"
#include "Platform/session/linux/bus/MutterIdleTime.h"
#include "Platform/session/linux/wayland/NotifiedIdleTime.h"
#include "Platform/session/linux/wayland/WaylandMenuBar.h"
#include "Platform/session/linux/wayland/WaylandPasteboard.h"
#include "Platform/session/linux/x11/X11IdleTime.h"
#include "Platform/session/linux/x11/X11MenuBar.h"
#include "Platform/session/linux/x11/X11Pasteboard.h"

namespace halvorn {

class LinuxDesktopFacts : public DesktopFacts {
 public:
  // Each fact's source is connected to when that fact is first asked for. Without the address of the system's
  // bus the session manager is not asked; the clock must count as the system's monotonic one does.
  LinuxDesktopFacts(const Environment& environment, const std::optional<std::string>& systemBus,
                    RunLoop& loop, const Clock& clock);

  // As the display server counts, the compositor or the X server, else the session manager, else unknown.
  std::optional<std::int64_t> nanosecondsSinceLastInput() override;
  // As the compositor counts; where that does not tell, as the X server does, which on some desktops sees every
  // change and on others those of its own programs.
  std::optional<std::int64_t> clipboardChangeCount() override;
  bool installMenuBarHandler(MenuBarHandler handler) override;
  // No desktop here colors its controls by such a tint.
  std::optional<int> controlTint() override { return std::nullopt; }

 private:
  X11IdleTime displayIdleTime_;
  MutterIdleTime compositorsIdleTime_;
  NotifiedIdleTime notifiedIdleTime_;
  LogindIdleTime sessionIdleTime_;
  WaylandPasteboard compositorsClipboard_;
  X11Pasteboard clipboard_;
  WaylandMenuBar compositorsMenuBar_;
  X11MenuBar menuBar_;
};

}  // namespace halvorn
