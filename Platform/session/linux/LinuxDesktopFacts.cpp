#include "Platform/session/linux/LinuxDesktopFacts.h"

#include <utility>

#include "Platform/session/linux/BusAddresses.h"
#include "Platform/session/linux/WaylandSession.h"

namespace halvorn {

LinuxDesktopFacts::LinuxDesktopFacts(const Environment& environment,
                                     const std::optional<std::string>& systemBus, RunLoop& loop,
                                     const Clock& clock)
    : displayIdleTime_(displayThatSeesAllInput(environment)),
      sessionIdleTime_(systemBus, clock),
      compositorsClipboard_(waylandSocketPath(environment)),
      clipboard_(environment.value("DISPLAY")),
      compositorsMenuBar_({waylandSocketPath(environment), sessionBusAddress(environment).value_or("")},
                          loop),
      menuBar_(environment.value("DISPLAY"), loop) {}

std::optional<std::int64_t> LinuxDesktopFacts::nanosecondsSinceLastInput() {
  const auto ofDisplay = displayIdleTime_.nanosecondsSinceLastInput();
  return ofDisplay ? ofDisplay : sessionIdleTime_.nanosecondsSinceLastInput();
}

std::optional<std::int64_t> LinuxDesktopFacts::clipboardChangeCount() {
  const auto ofCompositor = compositorsClipboard_.changeCount();
  return ofCompositor ? ofCompositor : clipboard_.changeCount();
}

bool LinuxDesktopFacts::installMenuBarHandler(MenuBarHandler handler) {
  return compositorsMenuBar_.installHandler(handler) || menuBar_.installHandler(std::move(handler));
}

}  // namespace halvorn
