// The one file that processor times are written to, kept apart from everybody else's.
#pragma once

#include <fcntl.h>
#include <sched.h>
#include <sys/file.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fstream>
#include <optional>
#include <string>

#include "Platform/running/posix/FileDescriptor.h"

namespace halvorn {

// While it lives, the administrator has a file of the test's own in its place. Anybody else shares it with
// their other programs, and cannot have it when it is another person's. One at a time, whichever program it is in: a file
// that one removes takes with it what another has mounted there. Thread: the one that made it.
class OwnProcessorTimes {
 public:
  explicit OwnProcessorTimes(const std::string& ownFile) {
    if (!folder_ || ::flock(folder_.get(), LOCK_EX) != 0) {
      missing_ = "the folder of the file of processor times cannot be locked";
      return;
    }
    struct stat item {};
    const bool isThere = ::lstat(kFile, &item) == 0;
    if (::geteuid() != 0) {
      if (isThere && item.st_uid != ::geteuid()) missing_ = "the file of processor times is another person's";
      return;
    }
    if (!isThere) const std::ofstream made(kFile);
    isMade_ = !isThere;
    const std::ofstream own(ownFile);
    isOwn_ = ::unshare(CLONE_NEWNS) == 0 &&
             ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
             ::mount(ownFile.c_str(), kFile, nullptr, MS_BIND, nullptr) == 0;
    if (!isOwn_) missing_ = "no mount name space of its own can be had";
  }
  ~OwnProcessorTimes() {
    if (isOwn_) ::umount2(kFile, MNT_DETACH);
    if (isMade_) ::unlink(kFile);
  }
  OwnProcessorTimes(const OwnProcessorTimes&) = delete;
  OwnProcessorTimes& operator=(const OwnProcessorTimes&) = delete;

  // Why it cannot be had.
  [[nodiscard]] const std::optional<std::string>& missing() const { return missing_; }

 private:
  static constexpr char kFile[] = "/tmp/proc_cpu_time.txt";
  FileDescriptor folder_{::open("/tmp", O_RDONLY | O_DIRECTORY | O_CLOEXEC)};
  std::optional<std::string> missing_;
  bool isMade_ = false;
  bool isOwn_ = false;
};

}  // namespace halvorn
