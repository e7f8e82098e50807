#include "tests/support/LiveProcesses.h"

namespace halvorn {

LiveProcesses::LiveProcesses(const LiveOptions& options)
    : procFiles(options.table),
      desktop({.display = options.display,
               .isWayland = !options.waylandSocket.empty(),
               .waylandSocket = options.waylandSocket,
               .bus = options.bus},
              procFiles, bundles, log),
      running(procFiles, bundles, windows, DesktopSession{"", options.display, options.waylandSocket}),
      source(running, procFiles, windows, workspace),
      control(running, windows, clock),
      events(running, windows, loop, loop),
      processes({.source = source,
                 .events = events,
                 .control = control,
                 .appleEvents = options.appleEvents ? *options.appleEvents : noAppleEvents,
                 .accessibility = options.accessibility ? *options.accessibility : noAccessibility,
                 .notifications = notifications,
                 .bundles = bundles,
                 .items = items,
                 .files = files,
                 .images = options.images ? *options.images : noImages,
                 .tasks = tasks,
                 .unicode = unicode,
                 .digests = options.digests ? *options.digests : knownDigests,
                 .codes = codes,
                 .clock = clock,
                 .log = log}),
      observation_(notifications.addObserver(KTProcessChangeNotification, nullptr,
                                             [this](const Notification& notification) {
                                               changes.push_back(notification.text("change")->bytes());
                                             })) {}

LiveProcesses::~LiveProcesses() = default;

KTProcessPointer LiveProcesses::listed(std::int32_t pid) {
  for (const auto& process : processes.allProcesses()) {
    if (process->unixPID() == pid) return process;
  }
  return nullptr;
}

}  // namespace halvorn
