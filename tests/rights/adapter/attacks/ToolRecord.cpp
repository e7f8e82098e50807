#include "tests/rights/adapter/attacks/ToolRecord.h"

#include <map>
#include <regex>
#include <sstream>

namespace halvorn {

const std::set<std::string>& namelessCalls() {
  static const std::set<std::string> calls = [] {
    std::istringstream words(
        "arch_prctl brk capget capset clone clone3 close close_range copy_file_range dup exit exit_group "
        "fadvise64 fallocate fchmod fchown fcntl fgetxattr flistxattr fremovexattr fsetxattr fstat fstatfs "
        "fsync ftruncate futex getdents64 getegid geteuid getgid getgroups getpid getrandom gettid getuid "
        "getsockopt ioctl ioprio_set landlock_add_rule landlock_create_ruleset landlock_restrict_self lseek "
        "madvise mmap mprotect mremap munmap nanosleep clock_nanosleep "
        "personality poll ppoll "
        "prctl pread64 preadv2 prlimit64 pwrite64 read recvfrom recvmsg restart_syscall rseq rt_sigaction "
        "rt_sigpending rt_sigprocmask rt_sigreturn rt_sigtimedwait sched_getaffinity sched_setaffinity "
        "sched_setscheduler sched_yield seccomp sendmsg "
        "sendto set_robust_list set_tid_address setfsgid setfsuid setgroups setitimer setpriority setsid "
        "setsockopt "
        "shutdown sigaltstack socket sysinfo tgkill umask uname write writev");
    std::set<std::string> result;
    for (std::string word; words >> word;) result.insert(word);
    return result;
  }();
  return calls;
}

// The calls in the tracer's record, those that another thread interrupted put together again.
std::vector<Call> callsIn(const std::string& record) {
  static const std::regex whole(R"(^(\d+)\s+(\w+)\((.*)\)\s+= (.*)$)");
  static const std::regex begun(R"(^(\d+)\s+(\w+\(.*?)\s*<unfinished \.\.\.>$)");
  static const std::regex resumed(R"(^(\d+)\s+<\.\.\. \w+ resumed>(.*)$)");
  std::map<std::string, std::string> halves;
  std::map<std::string, bool> isThePersons;
  std::vector<Call> calls;
  std::istringstream lines(record);
  for (std::string line; std::getline(lines, line);) {
    std::smatch parts;
    if (std::regex_match(line, parts, begun)) {
      const std::string half = parts[2];
      halves[parts[1]] = half;
      // The number may be somebody else's before the call has ended.
      if (half.starts_with("close(")) calls.push_back({.name = "close", .arguments = half.substr(6)});
      continue;
    }
    const bool wasBegun = std::regex_match(line, parts, resumed);
    if (wasBegun) line = parts[1].str() + " " + halves[parts[1]] + parts[2].str();
    const std::string joined = line;
    if (!std::regex_match(joined, parts, whole)) {
      // What cannot be read is no proof. Signals and ends are no calls.
      static const std::regex event(R"(^\d+\s+(---|\+\+\+) .*$)");
      if (!std::regex_match(joined, event)) calls.push_back({.name = "unreadable", .arguments = joined});
      continue;
    }
    const std::string thread = parts[1];
    if (parts[2] == "setfsuid" && parts[3] != "-1" && parts[3] != "4294967295")
      isThePersons[thread] = parts[3] != "0";
    if (wasBegun && parts[2] == "close") continue;
    calls.push_back(
        {.name = parts[2], .arguments = parts[3], .answer = parts[4], .isThePersons = isThePersons[thread]});
  }
  return calls;
}

}  // namespace halvorn
