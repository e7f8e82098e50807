// Secures itself as the administrator's tool does and says what is left.
#include <fcntl.h>
#include <sched.h>
#include <sys/personality.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <set>
#include <string>
#include <vector>

#include "train/PrivilegedProcess.h"

namespace {

void sayHowItIsServed() {
  cpu_set_t processors;
  const bool isKnown = ::sched_getaffinity(0, sizeof processors, &processors) == 0;
  std::string killedFirst;
  std::getline(std::ifstream("/proc/self/oom_score_adj"), killedFirst);
  constexpr int ioprioOfProcess = 1;
  constexpr unsigned long onlyAsk = 0xFFFFFFFF;
  std::printf(
      "class: %d\nnice: %d\ndisk: %ld\nprocessors: %d\nkilled first: %s\ntimer slack: %d\nimitated: %x\n",
      ::sched_getscheduler(0), ::getpriority(PRIO_PROCESS, 0), ::syscall(SYS_ioprio_get, ioprioOfProcess, 0),
      isKnown ? CPU_COUNT(&processors) : -1, killedFirst.c_str(), ::prctl(PR_GET_TIMERSLACK),
      static_cast<unsigned>(::personality(onlyAsk)));
}

}  // namespace

int main() {
  using halvorn::ProcessStart;
  const ProcessStart start = halvorn::secureProcess();
  std::printf("start: %s\n", start == ProcessStart::Privileged ? "privileged"
                             : start == ProcessStart::Ordinary ? "ordinary"
                                                               : "unsafe");
  std::set<std::string> environment;
  for (char** entry = environ; *entry != nullptr; ++entry) environment.insert(*entry);
  for (const std::string& entry : environment) std::printf("environment: %s\n", entry.c_str());
  std::printf("folder: %s\n", std::filesystem::current_path().c_str());
  const mode_t mask = ::umask(0);
  std::printf("mask: %o\ndescriptors:", mask);
  std::vector<int> descriptors;
  for (int descriptor = 0; descriptor < 1024; ++descriptor) {
    if (::fcntl(descriptor, F_GETFD) >= 0) std::printf(" %d", descriptor);
  }
  std::printf("\n");
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);) {
    std::replace(line.begin(), line.end(), '\t', ' ');
    for (const char* wanted : {"SigBlk:", "SigIgn:", "Cap", "NoNewPrivs:"}) {
      if (line.starts_with(wanted)) std::printf("%s\n", line.c_str());
    }
  }
  rlimit core{};
  ::getrlimit(RLIMIT_CORE, &core);
  std::printf("dumpable: %d\ncore: %lu\nown session: %s\n", ::prctl(PR_GET_DUMPABLE),
              static_cast<unsigned long>(core.rlim_cur), ::getsid(0) == ::getpid() ? "yes" : "no");
  sayHowItIsServed();
}
