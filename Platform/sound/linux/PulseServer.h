// The way to the sound server of the person's session, shared by all that asks it or plays.
//
// Nothing is connected until something is asked, and nothing stays connected afterwards: each question and
// each sound has a PulseSession of its own. No server is started for it.
//
// Thread: any.
#pragma once

#include <atomic>
#include <mutex>
#include <set>

#include "Core/Text.h"
#include "Platform/running/Clock.h"

namespace halvorn {

class PulseSession;

// How long a server may take, in seconds.
struct PulseLimits {
  // For the whole of a question. A server that the session starts on demand is up in less.
  double question = 2.0;
  // Without taking any sound, or after all of it should have been heard: then the server is given up, so that
  // no thread waits for ever.
  double standstill = 5.0;
};

class PulseServer {
 public:
  // The name is how mixers show this program. The clock lives longer than this object.
  PulseServer(const Clock& clock, const Text& applicationName, const PulseLimits& limits = {});
  PulseServer(const PulseServer&) = delete;
  PulseServer& operator=(const PulseServer&) = delete;

  [[nodiscard]] const Clock& clock() const { return clock_; }
  [[nodiscard]] const Text& applicationName() const { return applicationName_; }
  [[nodiscard]] const PulseLimits& limits() const { return limits_; }

  // Breaks off every session, now and from now on. Returns at once.
  void endAll();
  [[nodiscard]] bool hasEnded() const { return hasEnded_; }

 private:
  friend class PulseSession;
  void add(PulseSession* session);
  void remove(PulseSession* session);

  const Clock& clock_;
  Text applicationName_;
  PulseLimits limits_;
  std::atomic<bool> hasEnded_ = false;
  std::mutex mutex_;
  std::set<PulseSession*> sessions_;
};

}  // namespace halvorn
