#include "Platform/running/posix/PosixTasks.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <mutex>
#include <system_error>

#include "Core/Format.h"
#include "Platform/running/posix/CleanStart.h"
#include "Platform/running/posix/FileDescriptor.h"
#include "Platform/running/posix/ProcessCalls.h"
#include "Platform/running/posix/SpawnCalls.h"

namespace halvorn {

namespace {

// True when the child has ended; its status is then collected and its process id free for others.
bool collect(pid_t pid) {
  return retried([&] { return ::waitpid(pid, nullptr, WNOHANG); }) != 0;
}

// The error number, or 0. The program has the environment of this one.
int startTask(CleanStart& child, const Text& executable, const std::vector<Text>& arguments, pid_t& pid) {
  // Absolute, because the child may have changed its folder by the time it looks for the program.
  std::error_code error;
  const std::string path = std::filesystem::absolute(executable.bytes(), error).string();
  std::vector<std::string> words{executable.bytes()};
  for (const Text& argument : arguments) words.push_back(argument.bytes());
  return child.start(path, words, ownEnvironment(), pid);
}

struct Pipe {
  FileDescriptor readEnd;
  FileDescriptor writeEnd;
};

// Both ends lie above the standard streams: where one of those is closed, pipe() would hand out its number.
Pipe openPipe() {
  int ends[2] = {-1, -1};
  if (!SpawnCalls::openPipe(ends)) return {};
  const FileDescriptor readEnd(ends[0]);
  const FileDescriptor writeEnd(ends[1]);
  return {FileDescriptor(::fcntl(readEnd.get(), F_DUPFD_CLOEXEC, STDERR_FILENO + 1)),
          FileDescriptor(::fcntl(writeEnd.get(), F_DUPFD_CLOEXEC, STDERR_FILENO + 1))};
}

std::string readToEnd(const FileDescriptor& file) {
  std::string bytes;
  std::vector<char> buffer(64UL * 1024);
  while (true) {
    const ssize_t count = retried([&] { return ::read(file.get(), buffer.data(), buffer.size()); });
    if (count <= 0) return bytes;
    bytes.append(buffer.data(), static_cast<std::size_t>(count));
  }
}

}  // namespace

class PosixTasks::Orphanage {
 public:
  void take(pid_t pid) {
    const std::lock_guard lock(mutex_);
    pids_.push_back(pid);
    std::erase_if(pids_, collect);
  }
  void collectAll() {
    const std::lock_guard lock(mutex_);
    std::erase_if(pids_, collect);
  }

 private:
  std::mutex mutex_;
  std::vector<pid_t> pids_;
};

namespace {

class PosixTask : public Task {
 public:
  PosixTask(pid_t pid, std::shared_ptr<PosixTasks::Orphanage> orphanage)
      : pid_(pid), orphanage_(std::move(orphanage)) {}
  ~PosixTask() override {
    if (!hasEnded_) orphanage_->take(pid_);
  }

  bool isRunning() override {
    if (!hasEnded_) hasEnded_ = collect(pid_);
    return !hasEnded_;
  }
  void terminate() override {
    // An uncollected child keeps its process id, so this never reaches anybody else.
    if (isRunning()) ::kill(pid_, SIGTERM);
  }

 private:
  const pid_t pid_;
  bool hasEnded_ = false;
  const std::shared_ptr<PosixTasks::Orphanage> orphanage_;
};

}  // namespace

PosixTasks::PosixTasks() : orphanage_(std::make_shared<Orphanage>()) {}
PosixTasks::~PosixTasks() { orphanage_->collectAll(); }

TaskLaunch PosixTasks::launch(const Text& executable, const std::vector<Text>& arguments,
                              const Text& workingFolder, const Text& outputFile) {
  orphanage_->collectAll();
  const std::string folder = workingFolder.bytes();
  CleanStart child;
  child.open(STDIN_FILENO, "/dev/null", O_RDONLY);
  child.open(STDOUT_FILENO, outputFile.bytes(), O_WRONLY | O_APPEND | O_NOFOLLOW);
  child.duplicate(STDOUT_FILENO, STDERR_FILENO);
  child.changeFolder(folder);
  pid_t pid = -1;
  const int error = startTask(child, executable, arguments, pid);
  if (error == 0) return {std::make_unique<PosixTask>(pid, orphanage_), Text()};
  if (::access(folder.c_str(), X_OK) == 0) return {nullptr, Text(ProcessCalls::wordsFor(error))};
  return {nullptr, format("%@: %@", workingFolder, ProcessCalls::wordsFor(errno))};
}

void PosixTasks::launchAndForget(const Text& executable, const std::vector<Text>& arguments) {
  orphanage_->collectAll();
  CleanStart child;
  pid_t pid = -1;
  if (startTask(child, executable, arguments, pid) == 0) orphanage_->take(pid);
}

std::optional<std::string> PosixTasks::standardOutputOf(const Text& executable,
                                                        const std::vector<Text>& arguments) {
  orphanage_->collectAll();
  Pipe pipe = openPipe();
  if (!pipe.readEnd || !pipe.writeEnd) return std::nullopt;
  CleanStart child;
  child.duplicate(pipe.writeEnd.get(), STDOUT_FILENO);
  pid_t pid = -1;
  if (startTask(child, executable, arguments, pid) != 0) return std::nullopt;
  pipe.writeEnd.reset();
  std::string output = readToEnd(pipe.readEnd);
  // The program may have closed its output and go on; it is not waited for.
  orphanage_->take(pid);
  return output;
}

}  // namespace halvorn
