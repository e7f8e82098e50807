#include "tests/support/ChildProcess.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <sstream>
#include <stdexcept>
#include <thread>

namespace halvorn {
namespace {

std::string findProgram(const std::string& name) {
  if (name.find('/') != std::string::npos) return name;
  const char* path = std::getenv("PATH");
  std::istringstream folders(path != nullptr ? path : "/usr/bin:/bin");
  for (std::string folder; std::getline(folders, folder, ':');) {
    std::string candidate = folder + "/" + name;
    if (::access(candidate.c_str(), X_OK) == 0 && std::filesystem::is_regular_file(candidate))
      return candidate;
  }
  return {};
}

std::vector<char*> pointers(const std::vector<std::string>& texts) {
  std::vector<char*> result;
  for (const std::string& text : texts) result.push_back(const_cast<char*>(text.c_str()));
  result.push_back(nullptr);
  return result;
}

struct Pipe {
  int read = -1;
  int write = -1;
  Pipe() {
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC) != 0) throw std::runtime_error("pipe2 failed");
    read = ends[0];
    write = ends[1];
  }
};

// Runs in the child between fork and exec: async-signal-safe calls only.
[[noreturn]] void becomeProgram(const char* program, char* const* arguments, char* const* environment,
                                const ChildOptions& options, pid_t parent, int input, int output) {
  ::prctl(PR_SET_PDEATHSIG, options.signalWhenTestDies);
  if (::getppid() != parent) ::_exit(126);  // the test died before the call above
  sigset_t none;
  ::sigemptyset(&none);
  ::sigprocmask(SIG_SETMASK, &none, nullptr);
  ::signal(SIGPIPE, SIG_DFL);
  ::dup2(input, 0);
  ::dup2(output, 1);
  ::dup2(output, 2);
  for (const int descriptor : options.inheritedDescriptors) ::fcntl(descriptor, F_SETFD, 0);
  if (options.newSession) ::setsid();
  if (!options.workingFolder.empty() && ::chdir(options.workingFolder.c_str()) != 0) ::_exit(126);
  ::execve(program, arguments, environment);
  ::_exit(127);
}

// Until the other end is closed, as it is when the child becomes the program or ends.
void waitForClosing(int readEnd) {
  char byte = 0;
  while (::read(readEnd, &byte, 1) < 0 && errno == EINTR) {
  }
}

int statusOf(int waitStatus) {
  return WIFEXITED(waitStatus) ? WEXITSTATUS(waitStatus) : -WTERMSIG(waitStatus);
}

}  // namespace

void pauseBriefly() { std::this_thread::sleep_for(std::chrono::milliseconds(2)); }

double testSeconds() {
  return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

bool programExists(const std::string& name) { return !findProgram(name).empty(); }

ChildProcess::ChildProcess(const std::vector<std::string>& arguments, const ChildOptions& options) {
  const std::string program = findProgram(arguments.at(0));
  if (program.empty()) throw std::runtime_error("no such program: " + arguments.at(0));
  Pipe input;
  Pipe output;
  Pipe untilExec;
  const std::vector<char*> argumentPointers = pointers(arguments);
  const std::vector<char*> environmentPointers = pointers(options.environment);
  char* const* environment = options.environment.empty() ? environ : environmentPointers.data();
  const pid_t parent = ::getpid();
  pid_ = ::fork();
  if (pid_ == 0) {
    becomeProgram(program.c_str(), argumentPointers.data(), environment, options, parent, input.read,
                  output.write);
  }
  ::close(input.read);
  ::close(output.write);
  ::close(untilExec.write);
  waitForClosing(untilExec.read);
  ::close(untilExec.read);
  input_ = input.write;
  outputDescriptor_ = output.read;
  if (pid_ < 0) throw std::runtime_error("fork failed");
}

ChildProcess::~ChildProcess() {
  if (isRunning()) end(SIGKILL);
  closeInput();
  if (outputDescriptor_ >= 0) ::close(outputDescriptor_);
}

bool ChildProcess::isRunning() {
  if (status_) return false;
  int status = 0;
  if (::waitpid(pid_, &status, WNOHANG) != pid_) return true;
  status_ = statusOf(status);
  return false;
}

bool ChildProcess::readMore(double seconds) {
  pollfd entry{outputDescriptor_, POLLIN, 0};
  const int milliseconds = static_cast<int>(std::ceil(std::max(0.0, seconds) * 1000));
  if (::poll(&entry, 1, milliseconds) <= 0) return true;
  char buffer[4096];
  const ssize_t count = ::read(outputDescriptor_, buffer, sizeof buffer);
  if (count > 0) output_.append(buffer, static_cast<std::size_t>(count));
  return count > 0 || (count < 0 && errno == EINTR);
}

std::optional<std::string> ChildProcess::readLine(double seconds) {
  const double end = testSeconds() + seconds;
  for (bool open = true;;) {
    const std::size_t lineEnd = output_.find('\n', readPosition_);
    if (lineEnd != std::string::npos) {
      const std::string line = output_.substr(readPosition_, lineEnd - readPosition_);
      readPosition_ = lineEnd + 1;
      return line;
    }
    const double left = end - testSeconds();
    if (!open || left <= 0) return std::nullopt;
    open = readMore(left);
  }
}

bool ChildProcess::waitForOutput(const std::string& text, double seconds) {
  const double end = testSeconds() + seconds;
  for (bool open = true; output_.find(text) == std::string::npos;) {
    const double left = end - testSeconds();
    if (!open || left <= 0) return false;
    open = readMore(left);
  }
  return true;
}

void ChildProcess::writeInput(const std::string& text) {
  struct sigaction ignore {};
  struct sigaction before {};
  ignore.sa_handler = SIG_IGN;
  ::sigaction(SIGPIPE, &ignore, &before);
  for (std::size_t written = 0; written < text.size();) {
    const ssize_t count = ::write(input_, text.data() + written, text.size() - written);
    if (count <= 0) break;
    written += static_cast<std::size_t>(count);
  }
  ::sigaction(SIGPIPE, &before, nullptr);
}

void ChildProcess::closeInput() {
  if (input_ >= 0) ::close(input_);
  input_ = -1;
}

void ChildProcess::sendSignal(int signal) {
  // Not collected yet, so the pid is still this child's.
  if (isRunning()) ::kill(pid_, signal);
}

std::optional<int> ChildProcess::waitForEnd(double seconds) {
  // Reading on meanwhile, so that a program with much to say can finish.
  const double end = testSeconds() + seconds;
  while (isRunning() && testSeconds() < end) {
    if (!readMore(0.005)) pauseBriefly();
  }
  if (!isRunning()) {
    // The rest; another process may hold the pipe open, so never wait for its end.
    for (std::size_t before = output_.size() + 1; before != output_.size();) {
      before = output_.size();
      readMore(0);
    }
  }
  return status_;
}

int ChildProcess::end(int signal, double seconds) {
  sendSignal(signal);
  if (const auto status = waitForEnd(seconds)) return *status;
  sendSignal(SIGKILL);
  return waitForEnd(30.0).value_or(-1000);
}

CommandResult runCommand(const std::vector<std::string>& arguments, const ChildOptions& options,
                         double seconds) {
  ChildProcess child(arguments, options);
  child.closeInput();
  const auto status = child.waitForEnd(seconds);
  return {status.value_or(-1000), child.output()};
}

}  // namespace halvorn
