#include "train/PrivilegedProcess.h"

#include <fcntl.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <unistd.h>

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "Platform/rights/posix/ProcessRights.h"
#include "Platform/rights/posix/Requester.h"
#include "Platform/running/posix/ProcessCalls.h"
#include "Platform/running/posix/ResourceLimits.h"

namespace halvorn {
namespace {

// A file opened where a standard stream is missing would be written to by the log.
bool openStandardStreams() {
  for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    if (::fcntl(stream, F_GETFD) >= 0) continue;
    if (::open("/dev/null", O_RDWR) != stream) return false;
  }
  return true;
}

// Whoever asked waits at the other end of the standard input and sees this.
void tellThatTheToolRuns() { ::shutdown(STDIN_FILENO, SHUT_WR); }

void resetSignals() {
  struct sigaction action {};
  for (int signal = 1; signal < NSIG; ++signal) {
    // A reader of the log that went away, or a file too large, is told by the call that fails.
    action.sa_handler = signal == SIGPIPE || signal == SIGXFSZ ? SIG_IGN : SIG_DFL;
    ::sigaction(signal, &action, nullptr);
  }
  sigset_t none;
  sigemptyset(&none);
  ::sigprocmask(SIG_SETMASK, &none, nullptr);
  const itimerval never{};
  for (const auto timer : {ITIMER_REAL, ITIMER_VIRTUAL, ITIMER_PROF}) ::setitimer(timer, &never, nullptr);
}

void liftLimits() {
  for (const auto resource : {RLIMIT_FSIZE, RLIMIT_CPU, RLIMIT_AS, RLIMIT_DATA})
    raiseLimit(resource, RLIM_INFINITY);
  constexpr rlim_t usualStack = rlim_t{8} << 20;
  raiseLimit(RLIMIT_NOFILE, kManyDescriptors);
  raiseLimit(RLIMIT_STACK, usualStack);
  const rlimit nothing{0, 0};
  ::setrlimit(RLIMIT_CORE, &nothing);
}

bool buildEnvironment() {
  std::vector<std::pair<std::string, std::string>> kept;
  for (const char* name : RequesterVariables::nameAnybody() ? RequesterVariables::names()
                                                            : RequesterVariables::namesOfFolders()) {
    if (auto value = variableOfThisProcess(name)) kept.emplace_back(name, std::move(*value));
  }
  if (!ProcessCalls::clearEnvironment() || ::setenv("PATH", "/usr/sbin:/usr/bin:/sbin:/bin", 1) != 0)
    return false;
  for (const auto& [name, value] : kept) {
    if (::setenv(name.c_str(), value.c_str(), 1) != 0) return false;
  }
  return true;
}

bool isPlainPath(std::string_view rest) {
  if (!rest.starts_with('/')) return false;
  while (!rest.empty()) {
    const std::size_t slash = rest.find('/');
    if (rest.substr(0, slash) == "..") return false;
    rest = slash == std::string_view::npos ? std::string_view{} : rest.substr(slash + 1);
  }
  return true;
}

}  // namespace

ProcessStart secureProcess() {
  if (!openStandardStreams()) return ProcessStart::Unsafe;
  if (ProcessRights::comeFromTheFile()) return ProcessStart::Unsafe;
  if (::geteuid() != 0) return ProcessStart::Ordinary;
  resetSignals();
  ProcessCalls::closeFrom(STDERR_FILENO + 1);
  if (RequesterVariables::nameAnybody()) {
    // Whoever asked may be gone by now; the tool finishes what it begins.
    ProcessRights::outliveStarter();
    ProcessRights::takeUsualShare();
    ::setsid();
    tellThatTheToolRuns();
  }
  liftLimits();
  ::umask(S_IRWXG | S_IRWXO);
  if (::chdir("/") != 0 || !buildEnvironment() || !ProcessRights::keepThoseToFiles())
    return ProcessStart::Unsafe;
  return ProcessStart::Privileged;
}

bool arePlainPaths(const char* const* paths) {
  for (; *paths != nullptr; ++paths) {
    if (!isPlainPath(*paths)) return false;
  }
  return true;
}

}  // namespace halvorn
