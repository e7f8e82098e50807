// The desktop of a Linux session: its X server, where it has one, and the session manager.
#pragma once

#include <optional>
#include <string>

#include "Platform/session/DesktopFacts.h"
#include "Platform/session/linux/LogindIdleTime.h"
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

  // As the display server counts, else the session manager, else unknown.
  std::optional<std::int64_t> nanosecondsSinceLastInput() override;
  std::optional<std::int64_t> clipboardChangeCount() override { return clipboard_.changeCount(); }
  bool installMenuBarHandler(MenuBarHandler handler) override;
  // No desktop here colors its controls by such a tint.
  std::optional<int> controlTint() override { return std::nullopt; }

 private:
  X11IdleTime displayIdleTime_;
  LogindIdleTime sessionIdleTime_;
  X11Pasteboard clipboard_;
  X11MenuBar menuBar_;
};

}  // namespace halvorn
