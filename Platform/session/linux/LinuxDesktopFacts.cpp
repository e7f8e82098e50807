#include "Platform/session/linux/LinuxDesktopFacts.h"

#include <utility>

namespace halvorn {

LinuxDesktopFacts::LinuxDesktopFacts(const Environment& environment,
                                     const std::optional<std::string>& systemBus, RunLoop& loop,
                                     const Clock& clock)
    : displayIdleTime_(displayThatSeesAllInput(environment)),
      sessionIdleTime_(systemBus, clock),
      clipboard_(environment.value("DISPLAY")),
      menuBar_(environment.value("DISPLAY"), loop) {}

std::optional<std::int64_t> LinuxDesktopFacts::nanosecondsSinceLastInput() {
  const auto ofDisplay = displayIdleTime_.nanosecondsSinceLastInput();
  return ofDisplay ? ofDisplay : sessionIdleTime_.nanosecondsSinceLastInput();
}

bool LinuxDesktopFacts::installMenuBarHandler(MenuBarHandler handler) {
  return menuBar_.installHandler(std::move(handler));
}

}  // namespace halvorn
