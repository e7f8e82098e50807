#include "Platform/running/posix/PosixTasks.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <mutex>
#include <system_error>

#include "Core/Format.h"
#include "Platform/running/posix/FileDescriptor.h"
#include "Platform/running/posix/SpawnCalls.h"

namespace halvorn {

namespace {

Text reasonOf(int error) { return Text(std::generic_category().message(error)); }

// True when the child has ended; its status is then collected and its process id free for others.
bool collect(pid_t pid) {
  return retried([&] { return ::waitpid(pid, nullptr, WNOHANG); }) != 0;
}

// What happens in the child before the program runs.
class SpawnActions {
 public:
  SpawnActions() {
    ::posix_spawn_file_actions_init(&actions_);
    ::posix_spawnattr_init(&attributes_);
    sigset_t signals;
    sigfillset(&signals);
    ::posix_spawnattr_setsigdefault(&attributes_, &signals);
    sigemptyset(&signals);
    ::posix_spawnattr_setsigmask(&attributes_, &signals);
    ::posix_spawnattr_setflags(&attributes_, POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK);
  }
  ~SpawnActions() {
    ::posix_spawnattr_destroy(&attributes_);
    ::posix_spawn_file_actions_destroy(&actions_);
  }
  SpawnActions(const SpawnActions&) = delete;
  SpawnActions& operator=(const SpawnActions&) = delete;

  void open(int descriptor, const std::string& path, int flags) {
    ::posix_spawn_file_actions_addopen(&actions_, descriptor, path.c_str(), flags, 0);
  }
  void duplicate(int from, int to) { ::posix_spawn_file_actions_adddup2(&actions_, from, to); }
  void changeFolder(const std::string& path) {
    ::posix_spawn_file_actions_addchdir_np(&actions_, path.c_str());
  }
  void closeTheRest() { SpawnCalls::inheritStandardStreamsAlone(actions_, attributes_); }

  // 0, or the error number.
  [[nodiscard]] int spawn(const Text& executable, const std::vector<Text>& arguments, pid_t& pid) const {
    // Absolute, because the child may have changed its folder by the time it looks for the program.
    std::error_code error;
    const std::string path = std::filesystem::absolute(executable.bytes(), error).string();
    std::vector<std::string> words{executable.bytes()};
    for (const Text& argument : arguments) words.push_back(argument.bytes());
    std::vector<char*> pointers;
    for (std::string& word : words) {
      if (word.find('\0') != std::string::npos) return EINVAL;
      pointers.push_back(word.data());
    }
    pointers.push_back(nullptr);
    return ::posix_spawn(&pid, path.c_str(), &actions_, &attributes_, pointers.data(),
                         SpawnCalls::environment());
  }

 private:
  posix_spawn_file_actions_t actions_ = {};
  posix_spawnattr_t attributes_ = {};
};

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
  std::vector<char> buffer(64 * 1024);
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
  SpawnActions actions;
  actions.open(STDIN_FILENO, "/dev/null", O_RDONLY);
  actions.open(STDOUT_FILENO, outputFile.bytes(), O_WRONLY | O_APPEND | O_NOFOLLOW);
  actions.duplicate(STDOUT_FILENO, STDERR_FILENO);
  actions.changeFolder(folder);
  actions.closeTheRest();
  pid_t pid = -1;
  const int error = actions.spawn(executable, arguments, pid);
  if (error == 0) return {std::make_unique<PosixTask>(pid, orphanage_), Text()};
  if (::access(folder.c_str(), X_OK) == 0) return {nullptr, reasonOf(error)};
  return {nullptr, format("%@: %@", workingFolder, reasonOf(errno))};
}

void PosixTasks::launchAndForget(const Text& executable, const std::vector<Text>& arguments) {
  orphanage_->collectAll();
  SpawnActions actions;
  actions.closeTheRest();
  pid_t pid = -1;
  if (actions.spawn(executable, arguments, pid) == 0) orphanage_->take(pid);
}

std::optional<std::string> PosixTasks::standardOutputOf(const Text& executable,
                                                        const std::vector<Text>& arguments) {
  orphanage_->collectAll();
  Pipe pipe = openPipe();
  if (!pipe.readEnd || !pipe.writeEnd) return std::nullopt;
  SpawnActions actions;
  actions.duplicate(pipe.writeEnd.get(), STDOUT_FILENO);
  actions.closeTheRest();
  pid_t pid = -1;
  if (actions.spawn(executable, arguments, pid) != 0) return std::nullopt;
  pipe.writeEnd.reset();
  std::string output = readToEnd(pipe.readEnd);
  // The program may have closed its output and go on; it is not waited for.
  orphanage_->take(pid);
  return output;
}

}  // namespace halvorn
