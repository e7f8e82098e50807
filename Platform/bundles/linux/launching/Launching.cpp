#include "Platform/bundles/linux/launching/Launching.h"

#include <fcntl.h>
#include <grp.h>
#include <poll.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <optional>

#include "Platform/running/posix/CleanStart.h"
#include "Platform/running/posix/FileDescriptor.h"
#include "Platform/running/posix/ProcessCalls.h"
#include "Platform/running/posix/SpawnCalls.h"

namespace halvorn {
namespace {

constexpr char kNoId[] = "0000000000";  // as many digits as a process id can have

constexpr int kErrorDescriptor = 3;  // where the child says why it could not start the program

[[noreturn]] void reportAndExit(int errorPipe) {
  const int error = errno;
  (void)!::write(errorPipe, &error, sizeof error);
  ::_exit(127);
}

// Everything the child needs, made before it exists: between fork and exec nothing may be allocated.
class PreparedChild {
 public:
  explicit PreparedChild(const LaunchRequest& request)
      : request_(request), words_(wordsOf(request)), variables_(variablesOf(request)) {}

  [[nodiscard]] bool isAllowed() const { return request_.person.kind != LaunchPerson::Kind::Unknown; }

  // In the child. Where it cannot become the program, it writes errno into the pipe and ends.
  [[noreturn]] void become(int errorPipe) {
    const int raised = ::fcntl(errorPipe, F_DUPFD_CLOEXEC, kErrorDescriptor + 1);
    const int pipe = raised < 0 ? -1 : ::dup3(raised, kErrorDescriptor, O_CLOEXEC);
    if (pipe < 0) reportAndExit(errorPipe);
    ProcessCalls::closeFrom(kErrorDescriptor + 1);
    ::setsid();
    ::umask(022);
    const bool isReady = useNullStreams() && takePersonsRights() &&
                         (::chdir(request_.workingFolder.c_str()) == 0 || ::chdir("/") == 0);
    if (isReady) {
      resetSignals();
      if (request_.descriptorLimit) ::setrlimit(RLIMIT_NOFILE, &*request_.descriptorLimit);
      writeOwnIdIntoMark();
      ::execve(request_.program.c_str(), arguments_.get(), environment_.get());
    }
    reportAndExit(pipe);
  }

 private:
  static bool useNullStreams() {
    const int null = ::open("/dev/null", O_RDWR | O_CLOEXEC);
    bool isDone = null >= 0;
    for (int stream = 0; stream <= 2; ++stream) {
      // It may have become one of the three itself, where that was closed.
      const int result = null == stream ? ::fcntl(null, F_SETFD, 0) : ::dup2(null, stream);
      isDone = isDone && result >= 0;
    }
    return isDone;
  }

  bool takePersonsRights() const {
    if (request_.person.kind == LaunchPerson::Kind::ThisProcess) return true;
    if (::geteuid() == 0 && ::setgroups(request_.person.groups.size(), request_.person.groups.data()) != 0)
      return false;
    if (::setresgid(request_.person.gid, request_.person.gid, request_.person.gid) != 0) return false;
    return ::setresuid(request_.person.uid, request_.person.uid, request_.person.uid) == 0;
  }

  static std::vector<std::string> wordsOf(const LaunchRequest& request) {
    std::vector<std::string> words{request.program};
    words.insert(words.end(), request.arguments.begin(), request.arguments.end());
    return words;
  }

  static std::vector<std::string> variablesOf(const LaunchRequest& request) {
    std::vector<std::string> variables = request.environment;
    if (request.mark == LaunchRequest::Mark::Yes) {
      variables.push_back(std::string(kLaunchMarkVariable) + "=" + kNoId + " " + std::to_string(::getpid()));
    }
    return variables;
  }

  // The id is known in the child alone, where no text can be made; its place is there already.
  void writeOwnIdIntoMark() {
    if (request_.mark == LaunchRequest::Mark::No) return;
    std::string& mark = variables_.back();
    std::size_t place = mark.find(' ');
    for (pid_t rest = ::getpid(); rest > 0; rest /= 10) mark[--place] = static_cast<char>('0' + rest % 10);
  }

  const LaunchRequest& request_;
  const std::vector<std::string> words_;
  std::vector<std::string> variables_;
  const WordPointers arguments_{words_};
  const WordPointers environment_{variables_};
};

// Holds all signals back, so that no handler of this program ever runs in a child.
class WithoutSignals {
 public:
  WithoutSignals() {
    sigset_t all;
    sigfillset(&all);
    ::pthread_sigmask(SIG_SETMASK, &all, &before_);
  }
  ~WithoutSignals() { ::pthread_sigmask(SIG_SETMASK, &before_, nullptr); }
  WithoutSignals(const WithoutSignals&) = delete;
  WithoutSignals& operator=(const WithoutSignals&) = delete;

 private:
  sigset_t before_;
};

struct Pipe {
  FileDescriptor readEnd;
  FileDescriptor writeEnd;
};

std::optional<Pipe> makePipe() {
  int ends[2] = {-1, -1};
  if (!SpawnCalls::openPipe(ends)) return std::nullopt;
  return Pipe{FileDescriptor(ends[0]), FileDescriptor(ends[1])};
}

// The errno that the child reported; 0 when the pipe was closed by a successful start.
int reportedError(const FileDescriptor& readEnd) {
  int error = 0;
  const ssize_t count = retried([&] { return ::read(readEnd.get(), &error, sizeof error); });
  return count == static_cast<ssize_t>(sizeof error) ? error : 0;
}

}  // namespace

int launchDetached(const LaunchRequest& request) {
  PreparedChild child(request);
  if (!child.isAllowed()) return EPERM;
  auto pipe = makePipe();
  if (!pipe) return errno;
  pid_t middle = -1;
  {
    // The program is the child of a child that ends at once, so that it never
    // becomes a zombie of this program.
    const WithoutSignals withoutSignals;
    middle = ::fork();
    if (middle == 0) {
      const pid_t last = ::fork();
      if (last > 0) ::_exit(0);
      if (last == 0) child.become(pipe->writeEnd.get());
      reportAndExit(pipe->writeEnd.get());
    }
  }
  if (middle < 0) return errno;
  pipe->writeEnd = FileDescriptor();
  (void)retried([&] { return ::waitpid(middle, nullptr, 0); });
  return reportedError(pipe->readEnd);
}

int runAndWait(const LaunchRequest& request, double seconds) {
  PreparedChild child(request);
  auto pipe = child.isAllowed() ? makePipe() : std::nullopt;
  if (!pipe) return -1;
  pid_t pid = -1;
  {
    const WithoutSignals withoutSignals;
    pid = ::fork();
    if (pid == 0) child.become(pipe->writeEnd.get());
  }
  if (pid < 0) return -1;
  pipe->writeEnd = FileDescriptor();
  const FileDescriptor process(static_cast<int>(::syscall(SYS_pidfd_open, pid, 0U)));
  pollfd ended = {process.get(), POLLIN, 0};
  const bool isOver = process.get() >= 0 && ::poll(&ended, 1, static_cast<int>(seconds * 1000.0)) == 1;
  if (!isOver) ::kill(pid, SIGKILL);  // not collected yet, so the number is still its own
  int status = -1;
  const bool isCollected = retried([&] { return ::waitpid(pid, &status, 0); }) == pid;
  const bool hasRun = isOver && isCollected && WIFEXITED(status) && reportedError(pipe->readEnd) == 0;
  return hasRun ? WEXITSTATUS(status) : -1;
}

std::string programInPath(const std::string& name, const Environment& environment) {
  const std::string list = environment.value("PATH").value_or("/usr/local/bin:/usr/bin:/bin") + ":";
  for (std::size_t start = 0, end = 0; (end = list.find(':', start)) != std::string::npos; start = end + 1) {
    std::string program = list.substr(start, end - start) + "/" + name;
    struct stat information = {};
    // Relative folders depend on where this program stands by chance.
    if (!program.starts_with('/') || ::stat(program.c_str(), &information) != 0) continue;
    if (S_ISREG(information.st_mode) && ::access(program.c_str(), X_OK) == 0) return program;
  }
  return {};
}

}  // namespace halvorn
