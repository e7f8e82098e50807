// Starts a program, waits until a watch has seen it paint, ends it, and prints what that took.
#pragma once

#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>

#include <chrono>
#include <cstdio>

extern char** environ;

namespace measured {

using Clock = std::chrono::steady_clock;

inline double inMilliseconds(const timeval& time) {
  return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_usec) / 1e3;
}

// Prints the milliseconds from exec to the paint, then those of processor time that it took for that. The exit status: 1
// when nothing was painted in ten seconds. A watch has a descriptor() to wait for, and hasPainted(), which reads what has come.
template <typename Watch>
int firstPaint(Watch& watch, char** command) {
  pid_t pid = 0;
  const auto start = Clock::now();
  const auto deadline = start + std::chrono::seconds(10);
  if (::posix_spawn(&pid, command[0], nullptr, nullptr, command, environ) != 0) return 1;
  bool isPainted = false;
  double milliseconds = 0;
  while (!isPainted && Clock::now() < deadline) {
    isPainted = watch.hasPainted();
    milliseconds = std::chrono::duration<double, std::milli>(Clock::now() - start).count();
    pollfd input = {watch.descriptor(), POLLIN, 0};
    if (!isPainted) ::poll(&input, 1, 100);
  }
  ::kill(pid, SIGKILL);
  rusage used = {};
  ::wait4(pid, nullptr, 0, &used);
  if (!isPainted) return 1;
  std::printf("%.2f %.2f\n", milliseconds, inMilliseconds(used.ru_utime) + inMilliseconds(used.ru_stime));
  return 0;
}

}  // namespace measured
