// What two systems share names nothing that only one of them has: it would have to be
// taken apart by whoever adds the second.
// Why: docs/decisions/029-what-two-systems-share.md
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include "tests/support/TestFiles.h"

namespace halvorn {
namespace {

namespace fs = std::filesystem;

struct OnlyLinux {
  const char* name;  // a regular expression for a whole word, or for a header
  const char* reason;
};

constexpr OnlyLinux kOnlyLinux[] = {
    // headers
    {"linux/[a-z0-9_]+\\.h", "the kernel's own headers"},
    {"sys/(syscall|prctl|fsuid|auxv|xattr|vfs|sysinfo|sysmacros|capability|random)\\.h",
     "not elsewhere, or other"},
    {"sys/(epoll|eventfd|signalfd|timerfd|inotify|sendfile|pidfd)\\.h", "other systems wait in other ways"},
    {"(endian|malloc|error|mntent)\\.h", "the GNU library's"},
    // files
    {"O_(PATH|TMPFILE|NOATIME|LARGEFILE|DIRECT)", "ways to open that others lack"},
    {"AT_(EMPTY_PATH|NO_AUTOMOUNT)", "a descriptor with an empty name"},
    {"(openat2|renameat2|statx|fchmodat2|copy_file_range|getdents64|name_to_handle_at)",
     "calls of one kernel"},
    {"RENAME_(NOREPLACE|EXCHANGE)|RESOLVE_[A-Z_]+|STATX_[A-Z_]+|RWF_[A-Z]+", "and their flags"},
    {"(fallocate|posix_fallocate|posix_fadvise|readahead|preadv2|pwritev2|sendfile|sync_file_range)",
     "hints and moves of bytes"},
    {"POSIX_FADV_[A-Z]+|FALLOC_[A-Z_]+|MAP_POPULATE|FICLONE(RANGE)?|mremap|memfd_create", "and their flags"},
    {"(dirent|stat|lseek|open|off|statfs|fopen|rlimit)64(_t)?", "the large forms of one library"},
    {"st_[amc]tim", "elsewhere st_atimespec"},
    {"[fl]?(get|set|list|remove)xattr", "elsewhere with more arguments, and without those for links"},
    {"[A-Z_]*_SUPER_MAGIC|f_type", "kinds of file systems by number"},
    {"system\\.posix_acl_[a-z]+|security\\.[a-z]+|trusted\\.[A-Za-z_]+",
     "attributes with a meaning of their own"},
    {"/proc/|/sys/|/run/user", "file systems of one kernel"},
    // processes
    {"(syscall|SYS_[a-z0-9_]+)", "a call by number"},
    {"(prctl|PR_[A-Z_]+|capget|capset|CAP_[A-Z_]+|getauxval|AT_SECURE)", "rights in pieces"},
    {"setfs[ug]id|setres[ug]id|getres[ug]id", "rights of a thread; other systems have other calls"},
    {"(close_range|closefrom|clearenv|__environ|environ|secure_getenv)", "what a process inherits"},
    {"(pipe2|dup3|accept4|SOCK_CLOEXEC|SOCK_NONBLOCK|MSG_CMSG_CLOEXEC)", "two steps elsewhere"},
    {"posix_spawn_file_actions_addclosefrom_np", "the GNU library's"},
    {"(pidfd_[a-z_]+|gettid|tgkill|clone3|unshare|setns|sched_[gs]etaffinity|cpu_set_t|CPU_[A-Z]+)",
     "threads and processes by other numbers"},
    {"(epoll|inotify|signalfd|timerfd|eventfd)_?[a-z0-9_]*", "other systems wait in other ways"},
    {"POLLRDHUP|SIGSTKFLT|SIGPWR|SIGPOLL|SIGRTM(IN|AX)", "events without a name elsewhere"},
    {"(SO_PEERCRED|SCM_CREDENTIALS|program_invocation_(short_)?name|get_nprocs)", "who is there"},
    // the desktop and those who hand out rights
    {"XDG_[A-Z_]+|\\.local/share", "the freedesktop rules"},
    {"PKEXEC_UID|SUDO_UID|pkexec|polkit", "how rights are handed out"},
};

// Without comments. Strings stay: paths and names of variables stand in them.
std::string codeOf(const std::string& text) {
  static const std::regex comment(R"(("(?:[^"\\\n]|\\.)*")|//[^\n]*|/\*[^]*?\*/)");
  return std::regex_replace(text, comment, "$1");
}

// Each as "name: reason".
std::vector<std::string> whatOnlyLinuxHas(const std::string& code) {
  static const std::vector<std::regex> patterns = [] {
    std::vector<std::regex> result;
    for (const auto& [name, reason] : kOnlyLinux) {
      // A path goes on behind its beginning; everything else is a whole word.
      const bool isPath = name[0] == '/';
      const std::string pattern = std::string("(") + name + ")";
      result.emplace_back(isPath ? "()" + pattern : "(^|[^A-Za-z0-9_])" + pattern + "(?![A-Za-z0-9_])");
    }
    return result;
  }();
  std::vector<std::string> found;
  for (std::size_t i = 0; i < patterns.size(); ++i) {
    std::smatch match;
    if (std::regex_search(code, match, patterns[i]))
      found.push_back(match[2].str() + ": " + kOnlyLinux[i].reason);
  }
  return found;
}

// Lines that ask the preprocessor for anything.
std::vector<std::string> conditionsIn(const std::string& code) {
  static const std::regex condition(R"(^\s*#\s*(if|ifdef|ifndef|elif|elifdef)\b.*$)");
  std::vector<std::string> found;
  std::istringstream lines(code);
  for (std::string line; std::getline(lines, line);) {
    if (std::regex_match(line, condition)) found.push_back(line);
  }
  return found;
}

// The interfaces, the folders that two systems share, and the tool but for its composition root.
bool isForEverySystem(const std::string& file) {
  static const std::regex shared("Platform/[a-z]+/([A-Za-z]+\\.h|posix/.*)|train/.*");
  return std::regex_match(file, shared) && file != "train/train_main.cpp";
}

std::vector<std::string> filesForEverySystem() {
  std::vector<std::string> result;
  const fs::path root = KT_SOURCE_DIR;
  for (const char* folder : {"Platform", "train"}) {
    for (const auto& entry : fs::recursive_directory_iterator(root / folder)) {
      const std::string file = fs::relative(entry.path(), root).string();
      const bool isSource = entry.path().extension() == ".h" || entry.path().extension() == ".cpp";
      if (entry.is_regular_file() && isSource && isForEverySystem(file)) result.push_back(file);
    }
  }
  return result;
}

std::string textOf(const std::string& file) { return contentsOf(fs::path(KT_SOURCE_DIR) / file); }

TEST(Walls, WhatTwoSystemsShareNamesNothingThatOnlyOneHas) {
  const auto files = filesForEverySystem();
  EXPECT_GT(files.size(), 100U);
  for (const std::string& file : files) {
    for (const std::string& found : whatOnlyLinuxHas(codeOf(textOf(file))))
      ADD_FAILURE() << file << ": " << found;
  }
}

TEST(Walls, WhatTwoSystemsShareAsksForNoSystem) {
  for (const std::string& file : filesForEverySystem()) {
    for (const std::string& line : conditionsIn(codeOf(textOf(file)))) ADD_FAILURE() << file << ": " << line;
  }
}

TEST(SystemsWall, EachViolationIsSeen) {
  for (const char* code : {"#include <sys/xattr.h>",
                           "#include <linux/fs.h>",
                           "  ::close_range(3, ~0U, 0);",
                           "return facts.st_atim.tv_sec;",
                           "constexpr int flags = O_PATH | O_CLOEXEC;",
                           "extern char** environ;",
                           "::pipe2(ends, 0)",
                           "open(\"/proc/self/fd/3\")",
                           "std::getenv(\"XDG_DATA_HOME\")",
                           "keep(\"PKEXEC_UID\");",
                           "::setfsuid(1)",
                           "poll.events = POLLIN|POLLRDHUP;",
                           "::lgetxattr(path, name, nullptr, 0)",
                           "const dirent64* entry",
                           "home + \"/.local/share\"",
                           "x = \"security.selinux\"",
                           "syscall(SYS_getdents64)",
                           "::clearenv()",
                           "sched_getaffinity(0, 0, nullptr)",
                           "posix_fadvise(1, 0, 0, 0)"}) {
    EXPECT_FALSE(whatOnlyLinuxHas(codeOf(code)).empty()) << code;
  }
  for (const char* code : {"#ifdef __linux__", "#if defined(__APPLE__)", "  #  ifndef O_PATH", "#elif 1"})
    EXPECT_EQ(conditionsIn(code).size(), 1U) << code;
}

TEST(SystemsWall, WhatOnlyLooksLikeOneIsNone) {
  for (const char* code :
       {"// ::close_range is Linux's", "/* O_PATH\n O_PATH */", "SystemCalls::openPath",
        "SpawnCalls::environment()", "facts.st_atimespec", "ProcessCalls::clearEnvironment()",
        "constexpr off_t x = 64;", "#include <sys/stat.h>", "posix_spawn(&pid)", "#include <dirent.h>",
        "setGroupsOfThread(groups)"}) {
    EXPECT_EQ(whatOnlyLinuxHas(codeOf(code)), std::vector<std::string>{}) << code;
  }
  EXPECT_TRUE(conditionsIn("#pragma once\n// #if\nif (x) {\n#include <a>").empty());
}

}  // namespace
}  // namespace halvorn
