// What the privileged tool tells the system by name while it installs. Each call is held against a table: no
// name is followed through links with the administrator's rights, unless the table has a reason.
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <regex>
#include <set>
#include <sstream>

#include "tests/rights/adapter/attacks/AttackScene.h"

namespace halvorn {
namespace {

namespace fs = std::filesystem;

struct Rule {
  const char* call;
  const char* arguments;  // a regular expression that finds what makes the call harmless
  const char* reason;
};

// With the administrator's rights.
constexpr Rule kRules[] = {
    {"execve", ".*", "the start itself"},
    {"access", "^\"/etc/ld\\.so\\.preload\"", "the loader"},
    {"openat", "^AT_FDCWD, \"/(etc|lib|lib64|usr/lib|usr/share|run/systemd)/", "the system's own folders"},
    {"openat", "^AT_FDCWD, \"/sys/(devices|fs)/", "the system's own description"},
    {"openat", "^AT_FDCWD, \"/proc/(self|filesystems|sys|cmdline|1)", "the process table"},
    {"openat", "^AT_FDCWD, \"/\", ", "the root folder"},
    {"openat", "^[0-9]+, \"\\.\\.?\", ", "the folder itself and the one above are no links"},
    {"openat", "^[0-9]+, \"[^/]*\", [A-Z_|]*O_NOFOLLOW", "one step, and no link"},
    {"openat", "^AT_FDCWD, \"[^\"]*\", [A-Z_|]*O_PATH", "opened to compare it with others, for no other use"},
    {"openat2", "RESOLVE_NO_SYMLINKS", "no link on the way"},
    {"newfstatat", ".*", "only looks; what is done then is done by descriptor"},
    {"statx", ".*", "only looks"},
    {"statfs", "^\"/(sys|selinux|proc|dev|run)", "only looks; the account library"},
    {"faccessat2?", ".*", "only asks"},
    {"readlink", "^\"/proc/self/fd/[0-9]+\"", "where an open folder stands"},
    {"readlink(at)?", ".*", "only reads"},
    {"llistxattr|lgetxattr", ".*", "only reads"},
    {"chdir", "^\"/\"", "the root folder"},
    {"mkdirat", "^[0-9]+, \"[^/\"]+\"", "never over something"},
    {"mknodat", "^[0-9]+, \"[^/\"]+\"", "never over something"},
    {"symlinkat", ", [0-9]+, \"[^/\"]+\"$", "never over something"},
    {"linkat", "^[0-9]+, \"[^/\"]+\", [0-9]+, \"[^/\"]+\", 0$", "follows no link, never over something"},
    {"unlinkat", "^[0-9]+, \"[^/\"]+\"", "removes a link itself"},
    {"renameat2", "^[0-9]+, \"[^/\"]+\", [0-9]+, \"[^/\"]+\", RENAME_NOREPLACE$", "moves a link itself"},
    {"fchownat", "^[0-9]+, \"\", .*AT_EMPTY_PATH$", "the held item"},
    {"fchmodat2", "^[0-9]+, \"\", .*AT_EMPTY_PATH", "the held item"},
    {"syscall_0x1c4", "^0x[0-9a-f]+, 0x[0-9a-f]+, 0x[0-9a-f]+, 0x1000,", "the same, for an old tracer"},
    {"utimensat", "^[0-9]+, (\"\"|NULL), .*(AT_EMPTY_PATH|0)$", "the held item"},
    {"utimensat", "^[0-9]+, \"[^/\"]+\", .*AT_SYMLINK_NOFOLLOW$", "a link in a folder of our own"},
    {"chmod|setxattr|removexattr", "^\"/proc/self/fd/[0-9]+\"", "the held item"},
    {"connect", "sun_path=\"/(var/)?run/", "the account library's services"},
};

// With the file rights of whoever asked: that person could do it without the tool. But what is done so is
// still only what the tool is for.
constexpr Rule kRulesOfThePerson[] = {
    {"openat", ".*", "the person's own"},     {"openat2", ".*", "the person's own"},
    {"newfstatat", ".*", "only looks"},       {"statx", ".*", "only looks"},
    {"readlink(at)?", ".*", "only reads"},    {"mkdir(at)?", ".*", "the person's Trash"},
    {"unlinkat", ".*", "the person's Trash"}, {"llistxattr|lgetxattr", ".*", "only reads"},
};

// Those that take no name. What is in neither table is looked at before it is allowed.
const std::set<std::string>& namelessCalls() {
  static const std::set<std::string> calls = [] {
    std::istringstream words(
        "arch_prctl brk capget capset clone clone3 close close_range copy_file_range dup exit exit_group "
        "fadvise64 fallocate fchmod fchown fcntl fgetxattr flistxattr fremovexattr fsetxattr fstat fstatfs "
        "fsync ftruncate futex getdents64 getegid geteuid getgid getgroups getpid getrandom gettid getuid "
        "getsockopt ioctl ioprio_set lseek madvise mmap mprotect mremap munmap nanosleep clock_nanosleep "
        "personality poll ppoll "
        "prctl pread64 preadv2 prlimit64 pwrite64 read recvfrom recvmsg restart_syscall rseq rt_sigaction "
        "rt_sigpending rt_sigprocmask rt_sigreturn rt_sigtimedwait sched_getaffinity sched_setaffinity "
        "sched_setscheduler sched_yield sendmsg "
        "sendto set_robust_list set_tid_address setfsgid setfsuid setgroups setitimer setpriority setsid "
        "setsockopt "
        "shutdown sigaltstack socket sysinfo tgkill umask uname write writev");
    std::set<std::string> result;
    for (std::string word; words >> word;) result.insert(word);
    return result;
  }();
  return calls;
}

struct Call {
  std::string name;
  std::string arguments;
  bool isThePersons = false;
};

// The calls in the tracer's record, those that another thread interrupted put together again.
std::vector<Call> callsIn(const std::string& record) {
  static const std::regex whole(R"(^(\d+)\s+(\w+)\((.*)\)\s+= .*$)");
  static const std::regex begun(R"(^(\d+)\s+(\w+\(.*?)\s*<unfinished \.\.\.>$)");
  static const std::regex resumed(R"(^(\d+)\s+<\.\.\. \w+ resumed>(.*)$)");
  std::map<std::string, std::string> halves;
  std::map<std::string, bool> isThePersons;
  std::vector<Call> calls;
  std::istringstream lines(record);
  for (std::string line; std::getline(lines, line);) {
    std::smatch parts;
    if (std::regex_match(line, parts, begun)) {
      halves[parts[1]] = parts[2];
      continue;
    }
    if (std::regex_match(line, parts, resumed))
      line = parts[1].str() + " " + halves[parts[1]] + parts[2].str();
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
    calls.push_back({.name = parts[2], .arguments = parts[3], .isThePersons = isThePersons[thread]});
  }
  return calls;
}

bool isAllowed(const Call& call) {
  if (namelessCalls().contains(call.name)) return true;
  const auto fits = [&](const Rule& rule) {
    return std::regex_match(call.name, std::regex(rule.call)) &&
           std::regex_search(call.arguments, std::regex(rule.arguments));
  };
  if (call.isThePersons && std::any_of(std::begin(kRulesOfThePerson), std::end(kRulesOfThePerson), fits))
    return true;
  return std::any_of(std::begin(kRules), std::end(kRules), fits);
}

class ToolWalls : public AttackTest {
 protected:
  void SetUp() override {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    GTEST_SKIP() << "a sanitized tool makes calls of its own";
#endif
    if (::access("/usr/bin/strace", X_OK) != 0) GTEST_SKIP() << "strace is not installed";
    AttackTest::SetUp();
  }

  // Something of every kind, and something in the way of each.
  static void fill(AttackScene& scene, const std::string& target) {
    scene.addProduct(scene / "source/Nas.app");
    const std::string inner = scene / "source/Nas.app/Contents/";
    scene.addLink(inner + "link", "Info.plist", AttackScene::person);
    scene.addLink(inner + "link2", "nowhere", AttackScene::person);
    fs::create_hard_link(inner + "Info.plist", inner + "hard");
    scene.addFile(inner + "big", std::string(3'000'000, 'b'), 0644, AttackScene::person);
    ASSERT_EQ(::mkfifo((inner + "pipe").c_str(), 0664), 0);
    scene.addFile(scene / "wrapper/folder/file", "new", 0644, AttackScene::person);
    scene.addLink(scene / "wrapper/link", "nowhere", AttackScene::person);
    ASSERT_EQ(::mkfifo((scene / "wrapper/pipe").c_str(), 0664), 0);
    ASSERT_EQ(::mknod((scene / "wrapper/socket").c_str(), S_IFSOCK | 0664, 0), 0);
    scene.addFile(scene / (target + "/folder/old"), "old");
    scene.addLink(scene / (target + "/link"), "Nas.app");
    scene.addProduct(scene / (target + "/Nas.app"), AttackScene::root);
  }

  struct Traced {
    int status = 0;
    std::vector<Call> calls;
  };
  static Traced install(AttackScene& scene, const std::string& target,
                        const std::vector<std::string>& options = {}) {
    std::vector<std::string> words{"/usr/bin/strace", "-f", "-qq", "-s", "4096", "-o", scene / "record"};
    words.insert(words.end(), options.begin(), options.end());
    for (const std::string& entry : AttackScene::pkexecEnvironment())
      words.insert(words.end(), {"-E", entry});
    words.insert(words.end(),
                 {KT_TRAIN, scene / "source/Nas.app", scene / (target + "/Nas.app"), scene / "wrapper"});
    const CommandResult result = runCommand(words, {.environment = {"PATH=/usr/bin:/bin"}}, 20);
    return {.status = result.status, .calls = callsIn(bytesOf(scene / "record"))};
  }

  static void expectAllowed(const Traced& traced) {
    EXPECT_GT(traced.calls.size(), 500U);
    std::set<std::string> complaints;
    for (const Call& call : traced.calls) {
      if (!isAllowed(call)) complaints.insert(call.name + "(" + call.arguments + ")");
    }
    for (const std::string& complaint : complaints) ADD_FAILURE() << complaint;
  }

  void expectWalled(const std::string& target, const std::vector<std::string>& options,
                    const std::function<void(AttackScene&)>& prepare = {}) {
    expectHarmless([&](AttackScene& scene) -> Harm {
      if (prepare) prepare(scene);
      fill(scene, target);
      const Traced traced = install(scene, target, options);
      EXPECT_EQ(traced.status, 0);
      expectAllowed(traced);
      return std::nullopt;
    });
  }
};

TEST_F(ToolWalls, AnInstallationOverAnOldCopyFollowsNoNameOfAnybodyElse) { expectWalled("target", {}); }

TEST_F(ToolWalls, NorDoesOneIntoAFolderOfThePersons) {
  expectWalled("target", {},
               [](AttackScene& scene) { scene.addFolder(scene / "target", 0755, AttackScene::person); });
}

TEST_F(ToolWalls, NorDoesOneOnAnotherFileSystem) {
  expectWalled("disk/target", {}, [](AttackScene& scene) { scene.addSmallDisk(scene / "disk", "40m"); });
}

TEST_F(ToolWalls, NorDoesOneOnAKernelWithoutOpenat2) {
  expectWalled("target", {"-e", "inject=openat2:error=ENOSYS"});
}

TEST_F(ToolWalls, NorDoesOneWithOneCallAfterTheOtherFailing) {
  for (const std::string fault :
       {"mkdirat:error=ENOSPC:when=2", "mknodat:error=EIO:when=1", "symlinkat:error=EIO:when=1",
        "utimensat:error=EIO:when=2", "renameat2:error=EXDEV:when=1", "linkat:error=EPERM:when=1",
        "fchmod:error=EPERM:when=1"}) {
    expectHarmless([&](AttackScene& scene) -> Harm {
      fill(scene, "target");
      expectAllowed(install(scene, "target", {"-e", "inject=" + fault}));
      return std::nullopt;
    });
  }
}

// The table is worth nothing unless it refuses what must not be.
TEST(ToolWallsTable, WhatFollowsLinksIsRefused) {
  const struct {
    const char* name;
    const char* arguments;
  } violations[] = {{"fchmodat", R"(5, "pipe", 0644)"},
                    {"fchmodat2", R"(5, "pipe", 0644, 0)"},
                    {"syscall_0x1c4", "0x5, 0x7f00, 0x1a4, 0, 0, 0"},
                    {"chmod", R"("/opt/arena/pipe", 0644)"},
                    {"chown", R"("/opt/arena/pipe", 0, 0)"},
                    {"lchown", R"("/opt/arena/pipe", 0, 0)"},
                    {"fchownat", R"(5, "pipe", 0, 0, AT_SYMLINK_NOFOLLOW)"},
                    {"fchownat", R"(5, "pipe", 0, 0, 0)"},
                    {"utimensat", R"(5, "pipe", [UTIME_NOW, UTIME_NOW], 0)"},
                    {"openat", R"(5, "file", O_WRONLY|O_CREAT|O_CLOEXEC, 0644)"},
                    {"openat", R"(5, "folder/file", O_RDONLY|O_NOFOLLOW|O_CLOEXEC)"},
                    {"openat", R"(AT_FDCWD, "/opt/arena/file", O_RDONLY|O_CLOEXEC)"},
                    {"openat2", "5, \"a\", {flags=O_RDONLY|O_CLOEXEC, resolve=RESOLVE_NO_MAGICLINKS}, 24"},
                    {"open", R"("/opt/arena/file", O_RDONLY)"},
                    {"creat", R"("/opt/arena/file", 0644)"},
                    {"truncate", R"("/opt/arena/file", 0)"},
                    {"lsetxattr", R"("/proc/self/fd/5/pipe", "user.a", "b", 1, 0)"},
                    {"setxattr", R"("/opt/arena/pipe", "user.a", "b", 1, 0)"},
                    {"linkat", R"(5, "a", 5, "b", AT_SYMLINK_FOLLOW)"},
                    {"renameat", R"(5, "a", 6, "a")"},
                    {"rename", R"("/opt/a", "/opt/b")"},
                    {"renameat2", R"(5, "a", 6, "a", RENAME_EXCHANGE)"},
                    {"unlink", R"("/opt/a")"},
                    {"rmdir", R"("/opt/a")"},
                    {"mkdir", R"("/opt/a", 0700)"},
                    {"mount", R"("tmpfs", "/opt", "tmpfs", 0, NULL)"},
                    {"chroot", R"("/opt")"}};
  for (const auto& [name, arguments] : violations)
    EXPECT_FALSE(isAllowed({.name = name, .arguments = arguments})) << name << "(" << arguments << ")";
  EXPECT_FALSE(isAllowed({.name = "fchmodat", .arguments = R"(5, "a", 0644)", .isThePersons = true}));
}

}  // namespace
}  // namespace halvorn
