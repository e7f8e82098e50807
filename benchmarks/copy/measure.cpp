// measure PROGRAM [ARGUMENTS]: runs it and prints wall seconds, processor seconds and peak memory in
// kilobytes, those of its children included. Small itself: a program's peak counts from before it replaced
// the one that started it.
#include <sys/resource.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

#include <cstdio>

namespace {

double seconds(const timeval& time) {
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
}

double now() {
  timespec time{};
  ::clock_gettime(CLOCK_MONOTONIC, &time);
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

}  // namespace

int main(int argumentCount, char** arguments) {
  if (argumentCount < 2) return 64;
  const double start = now();
  const pid_t child = ::fork();
  if (child == 0) {
    ::execvp(arguments[1], arguments + 1);
    ::_exit(1);
  }
  int status = 0;
  if (child < 0 || ::waitpid(child, &status, 0) != child) return 1;
  const double wall = now() - start;
  rusage usage{};
  ::getrusage(RUSAGE_CHILDREN, &usage);
  std::printf("%f %f %ld\n", wall, seconds(usage.ru_utime) + seconds(usage.ru_stime), usage.ru_maxrss);
  return WIFEXITED(status) ? WEXITSTATUS(status) : 1;
}
