// Secures itself as the administrator's tool does and says what is left.
#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <set>
#include <string>
#include <vector>

#include "train/PrivilegedProcess.h"

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
}
