// One connection to the sound server, for one question or one sound.
//
//   PulseSession session(server, 2.0);
//   if (!session.connect()) return std::nullopt;
//   if (!session.finish(pa_context_get_server_info(session.context(), takeName, &name))) return std::nullopt;
//
// libpulse works only while a call waits, on the thread of that call: its call-backs need no locks.
//
// Thread: one; wakeUp() any.
// Why: docs/decisions/022-sound-through-libpulse.md
#pragma once

#include <pulse/pulseaudio.h>

#include <memory>

#include "Platform/sound/linux/PulseServer.h"

namespace halvorn {

class PulseSession {
 public:
  // The session has that many seconds, unless it is given more.
  PulseSession(PulseServer& server, double seconds);
  ~PulseSession();
  PulseSession(const PulseSession&) = delete;
  PulseSession& operator=(const PulseSession&) = delete;

  // Starts the time anew.
  void giveTime(double seconds);
  // False when there is no server, or none that answers in time.
  [[nodiscard]] bool connect();
  // Waits until the condition holds. False when the time is over, the connection ended or
  // PulseServer::endAll() came.
  template <typename Condition>
  [[nodiscard]] bool waitUntil(Condition condition) {
    while (!condition()) {
      if (!step()) return false;
    }
    return true;
  }
  // Waits for the operation and lets go of it; true when it was carried through. Null counts as failed.
  [[nodiscard]] bool finish(pa_operation* operation);

  // Null before connect().
  [[nodiscard]] pa_context* context() const { return context_.get(); }

  // Makes a wait look again whether it should end.
  void wakeUp();

 private:
  struct Free {
    void operator()(pa_mainloop* loop) const { pa_mainloop_free(loop); }
    void operator()(pa_context* context) const;
  };

  // Lets libpulse work once; false when there is nothing more to wait for.
  bool step();

  PulseServer& server_;
  double deadline_ = 0.0;
  std::unique_ptr<pa_mainloop, Free> loop_;
  std::unique_ptr<pa_context, Free> context_;
};

}  // namespace halvorn
