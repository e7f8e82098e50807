#include "Platform/sound/linux/PulseSession.h"

#include <algorithm>

namespace halvorn {

void PulseSession::Free::operator()(pa_context* context) const {
  pa_context_disconnect(context);
  pa_context_unref(context);
}

PulseSession::PulseSession(PulseServer& server, double seconds) : server_(server), loop_(pa_mainloop_new()) {
  giveTime(seconds);
  server_.add(this);
}

PulseSession::~PulseSession() { server_.remove(this); }

void PulseSession::giveTime(double seconds) { deadline_ = server_.clock().monotonicSeconds() + seconds; }

bool PulseSession::connect() {
  if (!loop_) return false;
  const std::string name = server_.applicationName().bytes();
  context_.reset(pa_context_new(pa_mainloop_get_api(loop_.get()), name.c_str()));
  if (!context_) return false;
  // A server that only this program wants would outlive it, so none is started.
  if (pa_context_connect(context_.get(), nullptr, PA_CONTEXT_NOAUTOSPAWN, nullptr) < 0) return false;
  return waitUntil([this] { return pa_context_get_state(context_.get()) == PA_CONTEXT_READY; });
}

bool PulseSession::step() {
  if (!context_ || !PA_CONTEXT_IS_GOOD(pa_context_get_state(context_.get()))) return false;
  const double seconds = deadline_ - server_.clock().monotonicSeconds();
  if (seconds <= 0) return false;
  const int microseconds = static_cast<int>(std::min(seconds, 600.0) * 1e6) + 1;
  if (pa_mainloop_prepare(loop_.get(), microseconds) < 0) return false;
  // Asked between the two: preparing swallows wake-ups that came before it, and those after it end the poll.
  if (server_.hasEnded()) return false;
  return pa_mainloop_poll(loop_.get()) >= 0 && pa_mainloop_dispatch(loop_.get()) >= 0;
}

bool PulseSession::finish(pa_operation* operation) {
  if (!operation) return false;
  const bool hasEnded = waitUntil([&] { return pa_operation_get_state(operation) != PA_OPERATION_RUNNING; });
  const bool isDone = hasEnded && pa_operation_get_state(operation) == PA_OPERATION_DONE;
  // Its call-back writes to what the caller is about to leave.
  if (!hasEnded) pa_operation_cancel(operation);
  pa_operation_unref(operation);
  return isDone;
}

void PulseSession::wakeUp() {
  if (loop_) pa_mainloop_wakeup(loop_.get());
}

}  // namespace halvorn
