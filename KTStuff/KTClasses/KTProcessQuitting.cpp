// Ending a process: asked first, then by force.
#include "Core/Log.h"
#include "KTStuff/KTClasses/KTProcess.h"
#include "Platform/processes/ApplicationControl.h"
#include "Platform/running/Clock.h"

namespace halvorn {
namespace {

constexpr float kQuitSeconds = 4.0F;
constexpr double kPollSeconds = 0.001;

// One request, repeated for a time.
struct Insistence {
  enum class End {
    Refused,  // only an application that is gone refuses
    Terminated,
    TimeOver,
    Canceled
  } end;
  double seconds;
  int attempts;
};

Insistence insist(RunningApplication& application, bool (RunningApplication::*request)(), double timeout,
                  Clock& clock, const Cancellation& cancellation) {
  using End = Insistence::End;
  const double start = clock.monotonicSeconds();
  const auto elapsed = [&] { return clock.monotonicSeconds() - start; };
  int attempts = 1;
  for (; timeout > elapsed(); ++attempts) {
    if (cancellation.isRequested()) return {End::Canceled, elapsed(), attempts - 1};
    if (!(application.*request)()) return {End::Refused, elapsed(), attempts};
    clock.sleep(kPollSeconds);
    if (application.isTerminated()) return {End::Terminated, elapsed(), attempts};
  }
  return {cancellation.isRequested() ? End::Canceled : End::TimeOver, elapsed(), attempts - 1};
}

void logAsked(const Log& log, const OptionalText& name, const Insistence& asked) {
  const auto& [end, seconds, attempts] = asked;
  switch (end) {
    case Insistence::End::Refused:
      return log("quit %@: process stopped after %1.3fs (%d attempts)", name, seconds, attempts);
    case Insistence::End::Terminated:
      return log("quit %@: terminated after %1.3fs (%d attempts)", name, seconds, attempts);
    case Insistence::End::Canceled:
      return log("quit %@: given up after %1.3fs (%d attempts)", name, seconds, attempts);
    case Insistence::End::TimeOver:
      return;
  }
}

void logForced(const Log& log, const OptionalText& name, const Insistence& forced) {
  const auto& [end, seconds, attempts] = forced;
  switch (end) {
    case Insistence::End::Refused:
      // KEEP: "foce-quit", as it has always stood in the logs that people search.
      return log("foce-quit %@: process stopped after %1.3fs (%d attempts)", name, seconds, attempts);
    case Insistence::End::Terminated:
      return log("force-quit %@: terminated after %1.3fs (%d attempts)", name, seconds, attempts);
    case Insistence::End::Canceled:
      return log("force-quit %@: given up after %1.3fs (%d attempts)", name, seconds, attempts);
    case Insistence::End::TimeOver:
      return log("quitting %@ failed", name);
  }
}

}  // namespace

bool KTProcess::quitRunningApplicationWithTimeout(float timeout, const Cancellation& cancellation) {
  const Log& log = services().log;
  const OptionalText processName = name();
  if (!services().control.hasRunningApplications()) {
    log("cannot quit %@: NSRunningApplication not available", processName);
    return false;
  }
  if (unixPID() == 0) {
    log("cannot quit %@: no pid", processName);
    return false;
  }
  const auto application = services().control.runningApplication(psn_);
  if (!application) {
    log("cannot quit %@: no process found", processName);
    return false;
  }
  const auto insistOn = [&](bool (RunningApplication::*request)()) {
    return insist(*application, request, timeout, services().clock, cancellation);
  };
  using End = Insistence::End;
  const Insistence asked = insistOn(&RunningApplication::terminate);
  if (asked.end != End::TimeOver) {
    logAsked(log, processName, asked);
    return asked.end != End::Canceled;
  }
  // From here on the application is not asked any more.
  const Insistence forced = insistOn(&RunningApplication::forceTerminate);
  logForced(log, processName, forced);
  return forced.end == End::Refused || forced.end == End::Terminated;
}

void KTProcess::quit(const Cancellation& cancellation) {
  if (quitRunningApplicationWithTimeout(kQuitSeconds, cancellation) || cancellation.isRequested()) return;
  sendQuitEvent();
}

}  // namespace halvorn
