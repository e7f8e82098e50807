// What the process model does, for a stop-watch:
//
//   process_model [DESKTOP] list             the process ids of all applications, one line each, once
//   process_model [DESKTOP] again            the same in one program for each line of its input: microseconds of each
//   process_model [DESKTOP] lookup           nanoseconds of a cached lookup: in front, anywhere
//   process_model [DESKTOP] latency N P      starts P and ends it, N times: from each end to its notification,
//                                            microseconds
//   process_model [DESKTOP] idle             listens to all events until its input ends
//
// DESKTOP is --display NAME of an X server, or --wayland PATH, where a compositor listens.
#include <signal.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "tests/support/LiveProcesses.h"

namespace halvorn {
namespace {

void list(LiveProcesses& live) {
  for (const KTProcessPointer& process : live.processes.allProcesses())
    std::printf("%d\n", process->unixPID());
}

void again(LiveProcesses& live) {
  for (int asked = std::getchar(); asked != EOF; asked = std::getchar()) {
    const double start = live.clock.monotonicSeconds();
    const auto all = live.processes.allProcesses();
    std::printf("%.1f %zu\n", (live.clock.monotonicSeconds() - start) * 1e6, all.size());
    std::fflush(stdout);
  }
}

void lookup(LiveProcesses& live) {
  constexpr int kLookups = 2000;
  const auto all = live.processes.allProcesses();
  // The same one again, and each in its turn, which is the worst that can be asked of this order.
  for (const bool isTurning : {false, true}) {
    const double start = live.clock.monotonicSeconds();
    std::size_t found = 0;
    for (std::size_t i = 0; i < kLookups; ++i) {
      const auto number = all[isTurning ? i % all.size() : 0]->serialNumber();
      found += live.processes.cachedProcessWithSerialNumber(number) != nullptr;
    }
    if (found != kLookups) std::exit(1);
    std::printf("%.1f\n", (live.clock.monotonicSeconds() - start) / kLookups * 1e9);
  }
}

void latency(LiveProcesses& live, int count, char* program) {
  // All of them are in the cache, which each end has looked through.
  std::ignore = live.processes.allProcesses();
  live.loop.runFor(0.1);
  for (int i = 0; i < count; ++i) {
    char* own[] = {program, nullptr};
    pid_t pid = -1;
    if (::posix_spawn(&pid, program, nullptr, nullptr, own, environ) != 0) std::exit(1);
    if (!live.settles([&] { return live.processes.processWithPID(pid) != nullptr; })) std::exit(1);
    live.loop.runFor(0.01);
    live.changes.clear();
    double heard = 0;
    const auto observation = live.notifications.addObserver(
        KTProcessChangeNotification, nullptr, [&](const Notification& notification) {
          if (*notification.text("change") == Text("ended")) heard = live.clock.monotonicSeconds();
        });
    const double start = live.clock.monotonicSeconds();
    ::kill(pid, SIGKILL);
    if (!live.settles([&] { return heard > 0; })) std::exit(1);
    std::printf("%.1f\n", (heard - start) * 1e6);
    ::waitpid(pid, nullptr, 0);
  }
}

void idle(LiveProcesses& live) {
  live.processes.installNotifications();
  bool isOver = false;
  const auto input = live.loop.whenReadable(STDIN_FILENO, [&] { isOver = true; });
  live.loop.runFor(0.5);
  std::puts("ready");
  std::fflush(stdout);
  while (!live.settles([&] { return isOver; }, 3600)) {
  }
}

int run(int argumentCount, char** arguments) {
  std::vector<char*> words(arguments + 1, arguments + argumentCount);
  LiveOptions options;
  if (words.size() > 1 && std::string_view(words[0]) == "--display") {
    options.display = words[1];
    words.erase(words.begin(), words.begin() + 2);
  }
  if (words.size() > 1 && std::string_view(words[0]) == "--wayland") {
    options.waylandSocket = words[1];
    words.erase(words.begin(), words.begin() + 2);
  }
  if (words.empty()) return 64;
  // One descriptor for each application is held.
  rlimit descriptors{};
  ::getrlimit(RLIMIT_NOFILE, &descriptors);
  descriptors.rlim_cur = descriptors.rlim_max;
  ::setrlimit(RLIMIT_NOFILE, &descriptors);
  LiveProcesses live(options);
  const std::string_view what = words[0];
  const int count = words.size() > 1 ? std::atoi(words[1]) : 0;
  if (what == "list") list(live);
  if (what == "again") again(live);
  if (what == "lookup") lookup(live);
  if (what == "latency" && words.size() > 2) latency(live, count, words[2]);
  if (what == "idle") idle(live);
  return 0;
}

}  // namespace
}  // namespace halvorn

int main(int argumentCount, char** arguments) { return halvorn::run(argumentCount, arguments); }
