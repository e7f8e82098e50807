#include "Platform/running/posix/TerminationSignals.h"

#include <fcntl.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <utility>

namespace halvorn {
namespace {

// A handler gets nothing but the signal's number, so what it needs stands outside of any object.
std::atomic<Cancellation*> requestedByHandler = nullptr;
std::atomic<int> pipeOfHandler = -1;
std::atomic<pid_t> processOfHandler = 0;
static_assert(std::atomic<Cancellation*>::is_always_lock_free && std::atomic<pid_t>::is_always_lock_free);

void onSignal(int signal) {
  // In a child that has not become its program yet: the pipe is the parent's.
  if (::getpid() != processOfHandler) return;
  const int error = errno;
  if (Cancellation* requested = requestedByHandler) requested->request();
  const auto byte = static_cast<unsigned char>(signal);
  // A full pipe holds enough of them already.
  (void)!::write(pipeOfHandler, &byte, 1);
  errno = error;
}

}  // namespace

TerminationSignals::TerminationSignals(RunLoop& loop, Cancellation& received,
                                       std::function<void(int)> callback)
    : callback_(std::move(callback)) {
  int ends[2] = {-1, -1};
  if (::pipe(ends) != 0) return;  // out of descriptors: the signals keep their actions
  readEnd_ = FileDescriptor(ends[0]);
  writeEnd_ = FileDescriptor(ends[1]);
  for (const int end : ends) {
    ::fcntl(end, F_SETFD, FD_CLOEXEC);
    ::fcntl(end, F_SETFL, O_NONBLOCK);
  }
  source_ = loop.whenReadable(readEnd_.get(), [this] { tellWhatCame(); });
  requestedByHandler = &received;
  pipeOfHandler = writeEnd_.get();
  processOfHandler = ::getpid();
  struct sigaction action = {};
  action.sa_handler = onSignal;
  action.sa_flags = SA_RESTART;
  sigemptyset(&action.sa_mask);
  for (const int signal : {SIGTERM, SIGHUP, SIGINT}) {
    struct sigaction before = {};
    if (::sigaction(signal, nullptr, &before) != 0 || before.sa_handler == SIG_IGN) continue;
    if (::sigaction(signal, &action, nullptr) == 0) caught_.push_back({signal, before});
  }
}

TerminationSignals::~TerminationSignals() {
  for (const Caught& caught : caught_) ::sigaction(caught.signal, &caught.before, nullptr);
  pipeOfHandler = -1;
  requestedByHandler = nullptr;
}

void TerminationSignals::tellWhatCame() const {
  unsigned char signal = 0;
  while (retried([&] { return ::read(readEnd_.get(), &signal, 1); }) == 1) callback_(signal);
}

}  // namespace halvorn
