#pragma once
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <functional>
#include <string>

namespace halvorn {

// Runs the body in a process of its own, since it changes the standard streams; 0 to 99 is what the body
// returned, 1000 and more the signal that ended it.
inline int inChild(const std::function<int()>& body) {
  const pid_t pid = ::fork();
  if (pid == 0) {
    ::alarm(20);
    ::_exit(body());
  }
  int status = 0;
  ::waitpid(pid, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : 1000 + WTERMSIG(status);
}

inline void sendStandardErrorTo(const std::string& path) {
  const int file = ::open(path.c_str(), O_WRONLY | O_CREAT | O_APPEND, 0600);
  ::dup2(file, STDERR_FILENO);
}

}  // namespace halvorn
