#include "Platform/rights/linux/PolicyQuestion.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <fstream>
#include <iterator>
#include <optional>
#include <sstream>

#include "Platform/rights/linux/CleanSpawn.h"
#include "Platform/running/posix/FileDescriptor.h"

namespace halvorn {
namespace {

constexpr int kPatience = 3000;  // milliseconds
constexpr int kExitRefused = 1;
constexpr int kExitAsksForPassword = 2;

// "pid,start time,user": a process that nobody can be mistaken for.
std::string thisProcess() {
  std::ifstream file("/proc/self/stat");
  const std::string text{std::istreambuf_iterator<char>(file), {}};
  const std::size_t nameEnd = text.rfind(')');
  if (nameEnd == std::string::npos) return {};
  std::istringstream words(text.substr(nameEnd + 1));
  constexpr int wordsBefore = 19;
  std::string startTime;
  for (int word = 0; word <= wordsBefore; ++word) words >> startTime;
  return std::to_string(::getpid()) + "," + startTime + "," + std::to_string(::getuid());
}

std::optional<int> statusWithinPatience(pid_t pid) {
  const FileDescriptor process(static_cast<int>(::syscall(SYS_pidfd_open, pid, 0)));
  pollfd wait{process.get(), POLLIN, 0};
  if (process.get() < 0 || retried([&] { return ::poll(&wait, 1, kPatience); }) <= 0) ::kill(pid, SIGKILL);
  int status = 0;
  if (retried([&] { return ::waitpid(pid, &status, 0); }) != pid || !WIFEXITED(status)) return std::nullopt;
  return WEXITSTATUS(status);
}

}  // namespace

PolicyAnswer askPolicy(const std::string& pkcheckPath) {
  const FileDescriptor nothing(::open("/dev/null", O_RDWR | O_CLOEXEC));
  pid_t pid = -1;
  const std::vector<std::string> words{pkcheckPath, "--action-id", "org.freedesktop.policykit.exec",
                                       "--process", thisProcess()};
  if (nothing.get() < 0 || spawnClean(words, nothing.get(), nothing.get(), pid) != 0)
    return PolicyAnswer::Unknown;
  const auto status = statusWithinPatience(pid);
  if (status == kExitRefused) return PolicyAnswer::Refuses;
  if (status == kExitAsksForPassword) return PolicyAnswer::AsksForPassword;
  return PolicyAnswer::Unknown;
}

}  // namespace halvorn
