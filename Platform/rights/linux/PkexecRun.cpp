#include "Platform/rights/linux/PkexecRun.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <fstream>
#include <utility>

#include "Platform/rights/linux/CleanSpawn.h"
#include "Platform/rights/posix/CopiedLine.h"
#include "Platform/running/posix/StandardErrorLog.h"

namespace halvorn {
namespace {

constexpr std::size_t kLongestComplaint = 8UL * 1024;
constexpr std::size_t kLongestLine = 64UL * 1024;
constexpr int kPauseWithoutProcessDescriptor = 50;  // milliseconds

FileDescriptor aboveStandardStreams(int descriptor) {
  const FileDescriptor original(descriptor);
  return FileDescriptor(::fcntl(original.get(), F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
}

struct Pair {
  FileDescriptor ours;
  FileDescriptor theirs;
};

Pair signalPair() {
  std::array<int, 2> ends{-1, -1};
  if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0) return {};
  return {aboveStandardStreams(ends[0]), aboveStandardStreams(ends[1])};
}

Pair outputPair() {
  std::array<int, 2> ends{-1, -1};
  if (::pipe2(ends.data(), O_CLOEXEC) != 0) return {};
  Pair pair{aboveStandardStreams(ends[0]), aboveStandardStreams(ends[1])};
  ::fcntl(pair.ours.get(), F_SETFL, O_NONBLOCK);
  return pair;
}

std::string processName(const std::string& path) {
  constexpr std::size_t kernelKeeps = 15;
  return path.substr(path.rfind('/') + 1).substr(0, kernelKeeps);
}

}  // namespace

std::unique_ptr<PkexecRun> PkexecRun::start(const std::string& pkexecPath, const std::string& toolPath,
                                            const std::vector<std::string>& arguments, int& error) {
  Pair signal = signalPair();
  Pair output = outputPair();
  error = errno;
  if (signal.ours.get() < 0 || signal.theirs.get() < 0 || output.ours.get() < 0 || output.theirs.get() < 0) {
    return nullptr;
  }
  // pkexec's own text dialog would ask on whatever terminal the installer was started from.
  std::vector<std::string> words{pkexecPath, "--disable-internal-agent", toolPath};
  words.insert(words.end(), arguments.begin(), arguments.end());
  pid_t pid = -1;
  error = spawnClean(words, signal.theirs.get(), output.theirs.get(), pid);
  if (error != 0) return nullptr;
  return std::unique_ptr<PkexecRun>(
      new PkexecRun(pid, processName(pkexecPath), std::move(signal.ours), std::move(output.ours)));
}

PkexecRun::PkexecRun(pid_t pid, std::string pkexecName, FileDescriptor signal, FileDescriptor output)
    : pid_(pid), pkexecName_(std::move(pkexecName)), signal_(std::move(signal)), output_(std::move(output)) {
  // Not collected yet, so the pid is still this child's.
  process_ = FileDescriptor(static_cast<int>(::syscall(SYS_pidfd_open, pid_, 0)));
}

PkexecRun::~PkexecRun() {
  if (!end_) ::waitpid(pid_, nullptr, WNOHANG);
}

bool PkexecRun::hasEnded() const {
  siginfo_t facts{};
  const int answer =
      retried([&] { return ::waitid(P_PID, static_cast<id_t>(pid_), &facts, WEXITED | WNOHANG | WNOWAIT); });
  // No such child: somebody has it collected already.
  return answer != 0 || facts.si_pid == pid_;
}

bool PkexecRun::readOutput() {
  std::array<char, 4096> buffer;
  while (true) {
    const ssize_t count = retried([&] { return ::read(output_.get(), buffer.data(), buffer.size()); });
    if (count == 0) return false;
    if (count < 0) return errno == EAGAIN;
    unfinishedLine_.append(buffer.data(), static_cast<std::size_t>(count));
    if (toolStarted_) {
      passOn(false);
    } else if (unfinishedLine_.size() > kLongestComplaint) {
      unfinishedLine_.resize(kLongestComplaint);
    }
  }
}

void PkexecRun::passOn(bool toTheLastByte) {
  while (!unfinishedLine_.empty()) {
    std::size_t length = unfinishedLine_.find('\n');
    if (length == std::string::npos && !toTheLastByte && unfinishedLine_.size() < kLongestLine) return;
    if (length == std::string::npos) length = std::min(unfinishedLine_.size(), kLongestLine);
    passOnLine(unfinishedLine_.substr(0, length));
    unfinishedLine_.erase(0, length + 1);
  }
}

void PkexecRun::passOnLine(const std::string& line) const {
  const auto bytes = bytesInCopiedLine(line);
  if (!bytes) return writeToStandardError(line + "\n");
  if (copied_) copied_(*bytes);
}

PkexecRun::Seen PkexecRun::wait() {
  std::array<pollfd, 3> waits{pollfd{process_.get(), POLLIN, 0}, pollfd{output_.get(), POLLIN, 0},
                              pollfd{toolStarted_ ? -1 : signal_.get(), POLLRDHUP, 0}};
  const int limit = process_.get() < 0 ? kPauseWithoutProcessDescriptor : -1;
  if (retried([&] { return ::poll(waits.data(), waits.size(), limit); }) < 0) return {.ended = hasEnded()};
  if (waits[1].revents != 0 && !readOutput()) output_.reset();
  Seen seen;
  // Hung up altogether: the end of the process, which may have been pkexec still.
  if ((waits[2].revents & POLLHUP) != 0) {
    signal_.reset();
  } else {
    seen.toolStarted = (waits[2].revents & POLLRDHUP) != 0;
  }
  seen.ended = (waits[0].revents != 0 || process_.get() < 0) && hasEnded();
  return seen;
}

PkexecRun::Moment PkexecRun::waitForStartOrEnd() {
  while (true) {
    const Seen seen = wait();
    if (seen.toolStarted) {
      toolStarted_ = true;
      return Moment::ToolStarted;
    }
    if (seen.ended) return Moment::Ended;
  }
}

void PkexecRun::withdraw() const {
  bool nameIsKnown = false;
  if (!isNamedPkexec(nameIsKnown) && nameIsKnown) return;
  // Between the look and the signal pkexec may become the tool. It belongs to the administrator then and gets
  // no signal of this person; the administrator's own is ended before it has touched anything.
  if (process_.get() >= 0) {
    ::syscall(SYS_pidfd_send_signal, process_.get(), SIGTERM, nullptr, 0U);
  } else {
    ::kill(pid_, SIGTERM);  // not collected yet, so the number is still its own
  }
}

bool PkexecRun::isNamedPkexec(bool& isKnown) const {
  std::ifstream file("/proc/" + std::to_string(pid_) + "/comm");
  std::string name;
  isKnown = static_cast<bool>(std::getline(file, name));
  return isKnown && name == pkexecName_;
}

const PkexecRun::End& PkexecRun::waitForEnd() {
  if (end_) {
    if (end_->toolRan) passOn(true);
    return *end_;
  }
  if (toolStarted_) passOn(false);
  while (!hasEnded()) (void)wait();
  // What it wrote is in the pipe; others may hold the pipe open, so its end is not waited for.
  if (output_.get() >= 0) (void)readOutput();
  End end;
  bool nameIsKnown = false;
  const bool wasPkexec = isNamedPkexec(nameIsKnown);
  int status = 0;
  if (retried([&] { return ::waitpid(pid_, &status, 0); }) == pid_) end.waitStatus = status;
  // Where processes of others are hidden: the two numbers that are pkexec's own, and a violent end.
  const bool looksLikePkexec =
      !end.waitStatus || !WIFEXITED(status) || WEXITSTATUS(status) == 126 || WEXITSTATUS(status) == 127;
  end.toolRan = toolStarted_ || (nameIsKnown ? !wasPkexec : !looksLikePkexec);
  // A tool that was over before its start was seen has its say when its end is asked for again.
  if (toolStarted_) passOn(true);
  if (!end.toolRan) complaint_ = std::move(unfinishedLine_);
  end_ = end;
  return *end_;
}

}  // namespace halvorn
