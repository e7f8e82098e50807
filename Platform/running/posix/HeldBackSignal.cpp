#include "Platform/running/posix/HeldBackSignal.h"

#include <pthread.h>

namespace halvorn {
namespace {

bool isPending(int signal) {
  sigset_t pending;
  sigemptyset(&pending);
  sigpending(&pending);
  return sigismember(&pending, signal) == 1;
}

sigset_t only(int signal) {
  sigset_t set;
  sigemptyset(&set);
  sigaddset(&set, signal);
  return set;
}

}  // namespace

HeldBackSignal::HeldBackSignal(int signal) : signal_(signal), wasPending_(isPending(signal)) {
  const sigset_t held = only(signal_);
  pthread_sigmask(SIG_BLOCK, &held, &before_);
}

HeldBackSignal::~HeldBackSignal() {
  const sigset_t held = only(signal_);
  int raised = 0;
  if (!wasPending_ && isPending(signal_)) sigwait(&held, &raised);
  pthread_sigmask(SIG_SETMASK, &before_, nullptr);
}

}  // namespace halvorn
