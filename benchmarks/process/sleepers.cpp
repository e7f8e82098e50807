// sleepers COUNT PROGRAM...: starts each program COUNT times, says "ready", and ends them all, by their ids,
// when its input ends.
#include <signal.h>
#include <spawn.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <vector>

int main(int argumentCount, char** arguments) {
  if (argumentCount < 3) return 64;
  std::vector<pid_t> started;
  bool isComplete = true;
  for (int program = 2; program < argumentCount; ++program) {
    for (int i = 0; i < std::atoi(arguments[1]); ++i) {
      char* own[] = {arguments[program], nullptr};
      pid_t pid = -1;
      if (::posix_spawn(&pid, arguments[program], nullptr, nullptr, own, environ) == 0)
        started.push_back(pid);
      else
        isComplete = false;
    }
  }
  if (isComplete) {
    std::puts("ready");
    std::fflush(stdout);
    while (std::getchar() != EOF) {
    }
  }
  for (const pid_t pid : started) ::kill(pid, SIGKILL);
  for (const pid_t pid : started) ::waitpid(pid, nullptr, 0);
  return isComplete ? 0 : 1;
}
