// A product that writes down how it was started, and ends: appends one file to
// the folder "reports" of its home.
//
// Two reports of the same product can be compared line by line; what must differ
// between any two runs is left out.
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <set>
#include <string>
#include <vector>

int main() {
  namespace fs = std::filesystem;
  const char* home = std::getenv("HOME");
  if (home == nullptr) return 1;
  const fs::path folder = fs::path(home) / "reports";
  std::error_code ignored;
  std::vector<int> descriptors;
  for (int descriptor = 0; descriptor < 1024; ++descriptor) {
    if (fs::exists(fs::symlink_status("/proc/self/fd/" + std::to_string(descriptor), ignored))) {
      descriptors.push_back(descriptor);
    }
  }
  fs::create_directory(folder, ignored);
  const fs::path unfinished = folder / (".started-" + std::to_string(::getpid()));
  std::ofstream report(unfinished);
  report << "user " << ::getuid() << " " << ::geteuid() << "\ngroup " << ::getgid() << " " << ::getegid()
         << "\n";
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);) {
    for (const char* wanted : {"Groups:", "Cap", "NoNewPrivs:", "SigBlk:", "SigIgn:", "Seccomp:"}) {
      if (line.starts_with(wanted)) report << line << "\n";
    }
  }
  const mode_t mask = ::umask(0);
  report << "mask " << std::oct << mask << std::dec << "\nfolder " << fs::current_path(ignored).string()
         << "\ndescriptors";
  for (const int descriptor : descriptors) report << " " << descriptor;
  report << "\n";
  std::set<std::string> variables;
  for (char** entry = environ; *entry != nullptr; ++entry) variables.insert(*entry);
  for (const std::string& variable : variables) report << "variable " << variable << "\n";
  report.close();
  // Whole or not at all, for whoever watches the folder.
  fs::rename(unfinished, folder / ("started-" + std::to_string(::getpid())), ignored);
}
