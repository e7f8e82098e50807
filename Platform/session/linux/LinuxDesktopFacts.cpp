#include "Platform/session/linux/LinuxDesktopFacts.h"

#include <utility>

#include "Platform/session/linux/BusAddresses.h"
#include "Platform/session/linux/WaylandSession.h"

namespace halvorn {

LinuxDesktopFacts::LinuxDesktopFacts(const Environment& environment,
                                     const std::optional<std::string>& systemBus, RunLoop& loop,
                                     const Clock& clock)
    : displayIdleTime_(displayThatSeesAllInput(environment)),
      compositorsIdleTime_({waylandSocketPath(environment), sessionBusAddress(environment).value_or("")}),
      notifiedIdleTime_(waylandSocketPath(environment), loop, clock),
      sessionIdleTime_(systemBus, clock),
      compositorsClipboard_(waylandSocketPath(environment)),
      clipboard_(environment.value("DISPLAY")),
      compositorsMenuBar_({waylandSocketPath(environment), sessionBusAddress(environment).value_or("")},
                          loop),
      menuBar_(environment.value("DISPLAY"), loop) {}

std::optional<std::int64_t> LinuxDesktopFacts::nanosecondsSinceLastInput() {
  auto told = displayIdleTime_.nanosecondsSinceLastInput();
  if (!told) told = notifiedIdleTime_.nanosecondsSinceLastInput();
  if (!told) told = compositorsIdleTime_.nanosecondsSinceLastInput();
  return told ? told : sessionIdleTime_.nanosecondsSinceLastInput();
}

std::optional<std::int64_t> LinuxDesktopFacts::clipboardChangeCount() {
  const auto ofCompositor = compositorsClipboard_.changeCount();
  return ofCompositor ? ofCompositor : clipboard_.changeCount();
}

bool LinuxDesktopFacts::installMenuBarHandler(MenuBarHandler handler) {
  return compositorsMenuBar_.installHandler(handler) || menuBar_.installHandler(std::move(handler));
}

}  // namespace halvorn
