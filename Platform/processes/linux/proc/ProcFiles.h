// The process table as the kernel shows it under /proc.
//
// A process may end, or its id be given to another one, between any two calls; whoever needs both to be about
// the same process holds a PidDescriptor meanwhile.
//
// Thread: any. Fails: with nullopt or an empty answer, for a process that is gone or hidden from this user.
#pragma once

#include <sys/types.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/running/posix/FileDescriptor.h"

namespace halvorn {

// Of the one line in "stat".
struct ProcStat {
  std::string name;  // at most 15 bytes, any but zero
  char state = '?';
  std::uint64_t userTicks = 0;  // processor time in user mode
  std::uint64_t threads = 0;
  std::uint64_t startTicks = 0;  // since the system started
};
// The name may hold blanks, line feeds and parentheses, so fields are counted after the last one of those.
[[nodiscard]] std::optional<ProcStat> parseProcStat(std::string_view content);

// Of the lines in "status".
struct ProcStatus {
  uid_t realUser = 0;
  uid_t effectiveUser = 0;
  // The process id in each namespace, from the outermost that we see to the process's own.
  std::vector<pid_t> namespacePids;
};
[[nodiscard]] std::optional<ProcStatus> parseProcStatus(std::string_view content);

// Which file it is, whatever it is called.
struct FileIdentity {
  dev_t device = 0;
  ino_t number = 0;

  friend bool operator==(const FileIdentity&, const FileIdentity&) = default;
};
[[nodiscard]] std::optional<FileIdentity> identityOfFile(const std::string& path);

// The texts that stand in front of each zero, and what is left behind the last one.
[[nodiscard]] std::vector<std::string> splitAtZero(std::string_view content);

class ProcFiles {
 public:
  explicit ProcFiles(const std::string& root = "/proc");

  // All process ids but 0 and 1, in no order.
  [[nodiscard]] std::vector<pid_t> pids() const;
  [[nodiscard]] std::optional<ProcStat> stat(pid_t pid) const;
  [[nodiscard]] std::optional<ProcStatus> status(pid_t pid) const;
  // Where the program's file is now, with " (deleted)" behind it once it is nowhere any more.
  [[nodiscard]] std::optional<std::string> executableLink(pid_t pid) const;
  // The file that the process runs, as this process sees it.
  [[nodiscard]] std::optional<FileIdentity> executable(pid_t pid) const;
  // Whether the path, as this process sees it, is the file that the process runs.
  [[nodiscard]] bool runsFile(pid_t pid, const std::string& path) const;
  // Whether the process sees the same file systems as this one.
  [[nodiscard]] bool sharesMounts(pid_t pid) const;
  [[nodiscard]] std::optional<std::string> workingFolder(pid_t pid) const;
  // The sockets that the process holds, by their numbers; each as often as it holds it.
  [[nodiscard]] std::vector<ino_t> sockets(pid_t pid) const;
  // The arguments, each with a zero behind it; "" for none.
  [[nodiscard]] std::string commandLine(pid_t pid) const;
  // The environment the program was started with, "NAME=value".
  [[nodiscard]] std::vector<std::string> environment(pid_t pid) const;

 private:
  [[nodiscard]] std::optional<std::string> read(pid_t pid, const char* name, std::size_t limit) const;
  [[nodiscard]] std::optional<std::string> readLink(pid_t pid, const char* name) const;
  [[nodiscard]] std::optional<FileIdentity> identity(pid_t pid, const char* name) const;

  std::string root_;
  FileDescriptor folder_;
};

}  // namespace halvorn
