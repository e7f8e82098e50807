#include "tests/support/LiveProcesses.h"

namespace halvorn {

LiveProcesses::LiveProcesses(const LiveOptions& options)
    : procFiles(options.table),
      windows(options.display,
              options.waylandDisplay.empty() ? XWindowSystem::Coverage::AllWindows
                                             : XWindowSystem::Coverage::SomeWindows,
              procFiles),
      running(procFiles, bundles, windows, DesktopSession{"", options.display, options.waylandDisplay}),
      source(running, procFiles, windows, workspace),
      control(running, windows),
      events(running, windows, loop, loop),
      processes({source, events, control, options.appleEvents ? *options.appleEvents : noAppleEvents,
                 options.accessibility ? *options.accessibility : noAccessibility, notifications, bundles,
                 items, files, options.images ? *options.images : noImages, tasks, unicode,
                 options.digests ? *options.digests : knownDigests, clock, log}),
      observation_(notifications.addObserver(KTProcessChangeNotification, nullptr,
                                             [this](const Notification& notification) {
                                               changes.push_back(notification.text("change")->bytes());
                                             })) {}

KTProcessPointer LiveProcesses::listed(std::int32_t pid) {
  for (const auto& process : processes.allProcesses()) {
    if (process->unixPID() == pid) return process;
  }
  return nullptr;
}

}  // namespace halvorn
