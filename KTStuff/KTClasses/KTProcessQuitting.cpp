// Ending a process: asked first, then by force.
#include "Core/Log.h"
#include "KTStuff/KTClasses/KTProcess.h"
#include "Platform/processes/ApplicationControl.h"
#include "Platform/running/Clock.h"

namespace halvorn {
namespace {

constexpr float kQuitSeconds = 4.0F;
constexpr double kPollSeconds = 0.001;

}  // namespace

bool KTProcess::quitRunningApplication(float withTimeout) {
  const Log& log = services().log;
  Clock& clock = services().clock;
  const OptionalText processName = name();
  if (!services().control.hasRunningApplications()) {
    log("cannot quit %@: NSRunningApplication not available", processName);
    return false;
  }
  const std::int32_t pid = unixPID();
  if (pid == 0) {
    log("cannot quit %@: no pid", processName);
    return false;
  }
  const auto application = services().control.runningApplication(pid);
  if (!application) {
    log("cannot quit %@: no process found", processName);
    return false;
  }

  const double timeout = withTimeout;
  double start = clock.monotonicSeconds();
  const auto elapsed = [&] { return clock.monotonicSeconds() - start; };
  for (int attempts = 1; timeout > elapsed(); ++attempts) {
    // A request is refused only by an application that is gone.
    if (!application->terminate()) {
      log("quit %@: process stopped after %1.3fs (%d attempts)", processName, elapsed(), attempts);
      return true;
    }
    clock.sleep(kPollSeconds);
    if (application->isTerminated()) {
      log("quit %@: terminated after %1.3fs (%d attempts)", processName, elapsed(), attempts);
      return true;
    }
  }

  // From here on the application is not asked any more.
  start = clock.monotonicSeconds();
  for (int attempts = 1; timeout > elapsed(); ++attempts) {
    if (!application->forceTerminate()) {
      // KEEP: "foce-quit", as it has always stood in the logs that people search.
      log("foce-quit %@: process stopped after %1.3fs (%d attempts)", processName, elapsed(), attempts);
      return true;
    }
    clock.sleep(kPollSeconds);
    if (application->isTerminated()) {
      log("force-quit %@: terminated after %1.3fs (%d attempts)", processName, elapsed(), attempts);
      return true;
    }
  }
  log("quitting %@ failed", processName);
  return false;
}

void KTProcess::quit() {
  if (!quitRunningApplication(kQuitSeconds)) sendQuitEvent();
}

}  // namespace halvorn
