#include "tools/halvorn/Program.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <sstream>

#include "Platform/running/posix/FileDescriptor.h"

namespace halvorn {
namespace {

std::vector<char*> pointersTo(std::vector<std::string>& words) {
  std::vector<char*> pointers;
  pointers.reserve(words.size() + 1);
  for (std::string& word : words) pointers.push_back(word.data());
  pointers.push_back(nullptr);
  return pointers;
}

std::vector<std::string> environmentWith(const std::vector<std::string>& entries) {
  std::vector<std::string> all;
  for (char** entry = ::environ; *entry != nullptr; ++entry) {
    const std::string each = *entry;
    bool isReplaced = false;
    for (const std::string& own : entries)
      isReplaced = isReplaced || each.starts_with(own.substr(0, own.find('=') + 1));
    if (!isReplaced) all.push_back(each);
  }
  all.insert(all.end(), entries.begin(), entries.end());
  return all;
}

// "" when it could not be started.
std::string readAll(int descriptor) {
  std::string all;
  char buffer[65536];
  for (;;) {
    const ssize_t count = ::read(descriptor, buffer, sizeof buffer);
    if (count > 0) {
      all.append(buffer, static_cast<std::size_t>(count));
    } else if (count == 0 || errno != EINTR) {
      return all;
    }
  }
}

}  // namespace

ProgramEnd runProgram(const std::vector<std::string>& words, const std::vector<std::string>& environment) {
  int ends[2] = {-1, -1};
  if (::pipe2(ends, O_CLOEXEC) != 0) return {};
  const FileDescriptor readEnd(ends[0]);
  FileDescriptor writeEnd(ends[1]);
  posix_spawn_file_actions_t actions;
  ::posix_spawn_file_actions_init(&actions);
  ::posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
  ::posix_spawn_file_actions_adddup2(&actions, writeEnd.get(), STDOUT_FILENO);
  ::posix_spawn_file_actions_adddup2(&actions, writeEnd.get(), STDERR_FILENO);
  std::vector<std::string> arguments = words;
  std::vector<std::string> variables = environmentWith(environment);
  pid_t pid = -1;
  const int error = ::posix_spawnp(&pid, words.front().c_str(), &actions, nullptr,
                                   pointersTo(arguments).data(), pointersTo(variables).data());
  ::posix_spawn_file_actions_destroy(&actions);
  writeEnd = FileDescriptor();
  if (error != 0) return {};
  ProgramEnd end{.output = readAll(readEnd.get())};
  int status = 0;
  while (::waitpid(pid, &status, 0) < 0) {
    if (errno != EINTR) return end;
  }
  if (WIFEXITED(status)) end.status = WEXITSTATUS(status);
  return end;
}

bool isInPath(const std::string& program) {
  const char* const path = std::getenv("PATH");
  std::istringstream folders(path != nullptr ? path : "/usr/bin:/bin");
  for (std::string folder; std::getline(folders, folder, ':');) {
    if (::access((folder + "/" + program).c_str(), X_OK) == 0) return true;
  }
  return false;
}

}  // namespace halvorn
