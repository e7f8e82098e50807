#include "Platform/running/posix/StandardErrorLog.h"

#include <pthread.h>
#include <unistd.h>

#include <cerrno>
#include <cmath>
#include <csignal>
#include <cstdio>
#include <ctime>

#include "Platform/running/Clock.h"

namespace halvorn {
namespace {

// Holds SIGPIPE back on this thread and swallows the one that a write raised meanwhile.
class WithoutPipeSignal {
 public:
  WithoutPipeSignal() {
    sigset_t pending;
    sigemptyset(&pending);
    sigpending(&pending);
    wasPending_ = sigismember(&pending, SIGPIPE) == 1;
    sigemptyset(&pipe_);
    sigaddset(&pipe_, SIGPIPE);
    pthread_sigmask(SIG_BLOCK, &pipe_, &before_);
  }
  ~WithoutPipeSignal() {
    sigset_t pending;
    sigemptyset(&pending);
    sigpending(&pending);
    int signal = 0;
    if (!wasPending_ && sigismember(&pending, SIGPIPE) == 1) sigwait(&pipe_, &signal);
    pthread_sigmask(SIG_SETMASK, &before_, nullptr);
  }
  WithoutPipeSignal(const WithoutPipeSignal&) = delete;
  WithoutPipeSignal& operator=(const WithoutPipeSignal&) = delete;

 private:
  sigset_t pipe_;
  sigset_t before_;
  bool wasPending_ = false;
};

}  // namespace

std::string logTimestamp(double secondsSince1970) {
  const double whole = std::floor(secondsSince1970);
  const auto seconds = static_cast<std::time_t>(whole);
  const int milliseconds = static_cast<int>((secondsSince1970 - whole) * 1000.0);
  std::tm parts = {};
  char date[32] = "";
  char result[48] = "";
  if (localtime_r(&seconds, &parts) == nullptr) return "0000-00-00 00:00:00.000";
  std::strftime(date, sizeof date, "%Y-%m-%d %H:%M:%S", &parts);
  std::snprintf(result, sizeof result, "%s.%03d", date, milliseconds);
  return result;
}

StandardErrorLog::StandardErrorLog(const Clock& clock, const Text& programName)
    : clock_(clock), programName_(escapedForLog(programName).bytes()) {}

void StandardErrorLog::write(const Text& line) const {
  writeToStandardError(logTimestamp(clock_.now().secondsSince1970) + " " + programName_ + "[" +
                       std::to_string(::getpid()) + "] " + line.bytes() + "\n");
}

void writeToStandardError(const std::string& text) {
  const WithoutPipeSignal withoutPipeSignal;
  std::size_t written = 0;
  while (written < text.size()) {
    const ssize_t count = ::write(STDERR_FILENO, text.data() + written, text.size() - written);
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return;  // nowhere to say so
    written += static_cast<std::size_t>(count);
  }
}

}  // namespace halvorn
