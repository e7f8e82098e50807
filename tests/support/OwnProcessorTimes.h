// The one file that processor times are written to, kept apart from everybody else's.
#pragma once

#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fstream>
#include <optional>
#include <string>

namespace halvorn {

// The administrator gets a file of the test's own in its place; anybody else shares it with their other
// programs, and cannot have it when it is another person's. nullopt, or why it cannot be had.
[[nodiscard]] inline std::optional<std::string> ownProcessorTimes(const std::string& ownFile) {
  constexpr char kFile[] = "/tmp/proc_cpu_time.txt";
  struct stat item {};
  if (::geteuid() != 0) {
    const bool isAnothers = ::lstat(kFile, &item) == 0 && item.st_uid != ::geteuid();
    return isAnothers ? std::optional<std::string>("the file of processor times is another person's")
                      : std::nullopt;
  }
  if (::lstat(kFile, &item) != 0) std::ofstream{kFile};
  std::ofstream{ownFile};
  const bool isApart =
      ::unshare(CLONE_NEWNS) == 0 && ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
  // That of an earlier test in this program.
  if (isApart) static_cast<void>(::umount2(kFile, MNT_DETACH));
  const bool isOwn = isApart && ::mount(ownFile.c_str(), kFile, nullptr, MS_BIND, nullptr) == 0;
  return isOwn ? std::nullopt : std::optional<std::string>("no mount name space of its own can be had");
}

}  // namespace halvorn
