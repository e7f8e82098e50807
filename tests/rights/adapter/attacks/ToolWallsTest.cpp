// What the privileged tool tells the system by name while it installs. Each call is held against a table: no
// name is followed through links with the administrator's rights, unless the table has a reason.
#include <algorithm>
#include <regex>
#include <set>

#include "tests/rights/adapter/attacks/TracedInstall.h"

namespace halvorn {
namespace {

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

// What takes a name and is in no table is looked at before it is allowed.
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

class ToolWalls : public TracedInstall {
 protected:
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

TEST_F(ToolWalls, TheToolConfinesItselfBeforeItReads) {
  expectHarmless([](AttackScene& scene) -> Harm {
    fill(scene, "target");
    const Traced traced = install(scene, "target");
    const auto first = [&](const std::string& name, const std::string& arguments) {
      return std::find_if(traced.calls.begin(), traced.calls.end(), [&](const Call& call) {
        return call.name == name && call.arguments.find(arguments) != std::string::npos;
      });
    };
    const auto filtered = first("seccomp", "SECCOMP_SET_MODE_FILTER");
    if (filtered == traced.calls.end()) return "no filter of system calls";
    // Where the kernel has none, it is asked all the same.
    const auto asked = first("landlock_create_ruleset", "LANDLOCK_CREATE_RULESET_VERSION");
    if (asked == traced.calls.end() || asked > filtered) return "no fence is asked for";
    const bool hasFences = first("landlock_create_ruleset", "handled_access_fs") != traced.calls.end();
    if (hasFences && first("landlock_restrict_self", "") > filtered) return "no fence before the filter";
    const bool reads = std::any_of(traced.calls.begin(), filtered, [](const Call& call) {
      const bool isOpening = call.name == "openat" || call.name == "openat2";
      const bool onlyNames = call.arguments.find("O_PATH") != std::string::npos;
      const bool isOfTheScene = std::regex_search(call.arguments, std::regex("/opt/|Nas.app|wrapper"));
      return isOpening && !onlyNames && isOfTheScene;
    });
    return reads ? Harm("reads before") : std::nullopt;
  });
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
