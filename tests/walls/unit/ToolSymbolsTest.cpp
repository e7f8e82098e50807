// What the privileged tool calls by name. Every function of the C library that it imports is in one of the
// two tables below, so that a new one is looked at before it is called with the administrator's rights.
#include <gtest/gtest.h>

#include <map>
#include <regex>
#include <set>
#include <sstream>
#include <string>

#include "tests/support/ChildProcess.h"

namespace halvorn {
namespace {

// These take a name. What they are told at run time is held against rules of its own.
const std::map<std::string, std::string>& namingFunctions() {
  static const std::map<std::string, std::string> functions = {
      {"chdir", "to the root folder, at the start"},
      {"chmod", "through the process table to a held item, on kernels that cannot do it by descriptor"},
      {"faccessat", "only asks; the installer's own question"},
      {"fchownat", "with an empty name: the held item itself"},
      {"fstatat", "only looks, and at links themselves"},
      {"lgetxattr", "only reads"},
      {"linkat", "follows no link; the new name is compared with the copy"},
      {"llistxattr", "only reads"},
      {"lstat", "only looks, and at links themselves"},
      {"mkdir", "with the person's rights, in the person's home"},
      {"mkdirat", "never over something; what is opened then is compared"},
      {"mknodat", "never over something; what is held then is compared"},
      {"open", "the root folder, for a walk without links; else with the person's rights or to name only"},
      {"openat", "no link followed"},
      {"readlink", "only reads, and from the process table"},
      {"readlinkat", "only reads, and the link itself"},
      {"removexattr", "through the process table to a held item"},
      {"renameat", "where a file system knows no flags; links are moved, not followed"},
      {"renameat2", "links are moved, not followed"},
      {"setxattr", "through the process table to a held item"},
      {"stat", "only looks; what is done then is done by descriptor"},
      {"statx", "with an empty name: the held item itself"},
      {"symlinkat", "never over something; what is held then is compared"},
      {"syscall", "for what the library lacks; which calls, the rules at run time say"},
      {"unlinkat", "links are removed, not followed"},
      {"utimensat", "of the held item; by name only in a folder of our own, no link followed"}};
  return functions;
}

// These take none, or (getpwuid_r, localtime_r and their like) only names that the library itself knows.
const std::set<std::string>& namelessFunctions() {
  static const std::set<std::string> functions = [] {
    std::istringstream words(
        "abort bcmp clearenv close close_range closedir copy_file_range errno_location exit fallocate fchmod "
        "fchown fcntl fdopendir fgetxattr flistxattr floor fprintf fputc fputs fremovexattr fsetxattr fstat "
        "fstatfs ftruncate futimens fwrite getauxval getegid getenv geteuid getgid getgrouplist getgroups "
        "getpid getpwnam_r getpwuid_r getrlimit getuid gmon_start__ ioctl libc_start_main localtime_r lseek "
        "memchr memcmp memcpy memmove memset mmap munmap nanosleep posix_fadvise prctl pread preadv2 "
        "personality pthread_mutex_lock pthread_mutex_unlock pthread_sigmask pwrite read readdir "
        "sched_cpucount "
        "sched_getaffinity sched_setaffinity sched_setscheduler setenv setfsgid setfsuid setitimer "
        "setpriority setrlimit setsid shutdown sigaction sigaddset "
        "sigemptyset sigismember sigpending sigprocmask sigwait snprintf stack_chk_fail strcmp "
        "strerrordesc_np strftime strlen strtol sysconf tzset umask write");
    std::set<std::string> result;
    for (std::string word; words >> word;) result.insert(word);
    return result;
  }();
  return functions;
}

// Without the version, and without what fortified and older forms of a name add.
std::string plainName(const std::string& symbol) {
  static const std::regex decoration("^_*(.+?)(_chk|_2|64|64_2)?(@.*)?$");
  std::smatch parts;
  return std::regex_match(symbol, parts, decoration) ? parts[1].str() : symbol;
}

std::vector<std::string> importsOf(const std::string& program) {
  const CommandResult listing = runCommand({"nm", "-D", "--undefined-only", program});
  EXPECT_EQ(listing.status, 0) << listing.output;
  std::istringstream words(listing.output);
  std::vector<std::string> imports;
  for (std::string word; words >> word;) {
    if (word.size() > 1) imports.push_back(word);  // a letter says the kind
  }
  return imports;
}

// The runtime of C++ itself, and not its files, streams or commands.
bool isOfTheLanguage(const std::string& symbol) {
  static const std::regex language("^(_Z|__cxa_|__gxx_|_Unwind_|_ITM_).*");
  static const std::regex files(".*(10filesystem|basic_filebuf|fstream|__basic_file|6locale).*");
  return std::regex_match(symbol, language) && !std::regex_match(symbol, files);
}

TEST(Walls, EveryFunctionThatTheToolImportsIsKnown) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
  GTEST_SKIP() << "a sanitized tool imports what its sanitizer needs";
#endif
  const auto imports = importsOf(KT_TRAIN_PROGRAM);
  EXPECT_GT(imports.size(), 80U);
  for (const std::string& symbol : imports) {
    if (isOfTheLanguage(symbol)) continue;
    const std::string name = plainName(symbol);
    EXPECT_TRUE(namingFunctions().contains(name) || namelessFunctions().contains(name))
        << symbol << ": does it take a name, and does it follow links?";
  }
}

// A reason for what nobody calls any more would hide the next call.
TEST(Walls, EveryNamingFunctionThatIsAllowedIsImported) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
  GTEST_SKIP() << "a sanitized tool imports its sanitizer's functions instead";
#endif
  std::set<std::string> imported;
  for (const std::string& symbol : importsOf(KT_TRAIN_PROGRAM)) imported.insert(plainName(symbol));
  for (const auto& [name, reason] : namingFunctions())
    EXPECT_TRUE(imported.contains(name)) << name << " (" << reason << ")";
}

}  // namespace
}  // namespace halvorn
