// A table of processes that holds those of one test and no others, however many programs of the same user
// come and go meanwhile. What is read of each is the real thing: every entry leads to the kernel's own.
//
//   OwnProcesses own;
//   own.add(child.pid());
//   ProcFiles files(own.path());
#pragma once

#include <sys/types.h>
#include <unistd.h>

#include <filesystem>
#include <string>
#include <system_error>

#include "tests/support/TemporaryFolder.h"

namespace halvorn {

class OwnProcesses {
 public:
  // This program is in it.
  OwnProcesses() { add(::getpid()); }

  // Also for an id that was added before and belongs to another process by now.
  void add(pid_t pid) {
    std::error_code isThereAlready;
    const std::string name = std::to_string(pid);
    std::filesystem::create_directory_symlink("/proc/" + name, folder_.path() / name, isThereAlready);
  }
  [[nodiscard]] std::string path() const { return folder_.path().string(); }

 private:
  TemporaryFolder folder_;
};

}  // namespace halvorn
