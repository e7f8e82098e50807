#include "Platform/sound/linux/PulseServer.h"

#include "Platform/sound/linux/PulseSession.h"

namespace halvorn {

PulseServer::PulseServer(const Clock& clock, const Text& applicationName, const PulseLimits& limits)
    : clock_(clock), applicationName_(applicationName), limits_(limits) {}

void PulseServer::endAll() {
  hasEnded_ = true;
  const std::lock_guard lock(mutex_);
  for (PulseSession* session : sessions_) session->wakeUp();
}

void PulseServer::add(PulseSession* session) {
  const std::lock_guard lock(mutex_);
  sessions_.insert(session);
}

void PulseServer::remove(PulseSession* session) {
  const std::lock_guard lock(mutex_);
  sessions_.erase(session);
}

}  // namespace halvorn
