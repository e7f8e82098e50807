// The copy of what is never opened: pipes, sockets, devices and links.
#include <linux/audit.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <sys/sysmacros.h>
#include <sys/wait.h>

#include <cstddef>
#include <functional>

#include "tests/files/adapter/CopyScene.h"
#include "tests/support/OwnMounts.h"

namespace halvorn {
namespace {

class UnopenedCopy : public CopyScene {
 protected:
  void SetUp() override { mask_ = ::umask(S_IRWXG | S_IRWXO); }
  void TearDown() override { ::umask(mask_); }

  void addNode(const std::string& path, mode_t kindAndMode, dev_t device = 0) {
    ASSERT_EQ(::mknod(at(path).c_str(), kindAndMode, device), 0) << path;
    ASSERT_EQ(::chmod(at(path).c_str(), kindAndMode & 07777), 0) << path;
  }
  // Nothing of the original is lent to others.
  [[nodiscard]] bool copyGuarded(const std::string& from, const std::string& to) {
    PosixFileManager guarded({.links = LinksInTheWay::Refused, .ownership = Ownership::ThisProcess});
    return !guarded.copyItem(at(from), at(to));
  }
  // In a process of its own, for what cannot be undone. It exits with what `work` answers.
  static int statusOf(const std::function<int()>& work) {
    const pid_t process = ::fork();
    if (process == 0) ::_exit(work());
    int status = 0;
    EXPECT_EQ(::waitpid(process, &status, 0), process);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
  }
  // Takes the call that changes the mode by descriptor away, as kernels before 6.6 and some sandboxes do.
  static bool forgetChangeOfModeByDescriptor() {
    constexpr unsigned fchmodat2 = 452;
    sock_filter code[] = {
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, fchmodat2, 0, 1),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | ENOSYS),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
    };
    const sock_fprog program{sizeof code / sizeof code[0], code};
    return ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
           ::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) == 0;
  }

 private:
  mode_t mask_ = 0;
};

TEST_F(UnopenedCopy, EveryModeOfAPipeAndASocketArrivesWhateverTheMask) {
  addFolder("from");
  for (mode_t bits = 0; bits < 010000; bits += bits < 01000 ? 1 : 01000) {
    addNode("from/pipe" + std::to_string(bits), S_IFIFO | bits);
    addNode("from/socket" + std::to_string(bits), S_IFSOCK | bits);
  }
  ASSERT_TRUE(copy());
  ASSERT_TRUE(copyGuarded("from", "guarded"));
  constexpr mode_t neverLent = S_ISUID | S_ISGID | S_IWGRP | S_IWOTH;
  for (mode_t bits = 0; bits < 010000; bits += bits < 01000 ? 1 : 01000) {
    for (const char* kind : {"pipe", "socket"}) {
      const std::string name = kind + std::to_string(bits);
      EXPECT_EQ(facts("to/" + name).st_mode, facts("from/" + name).st_mode) << name;
      EXPECT_EQ(facts("guarded/" + name).st_mode, facts("from/" + name).st_mode & ~neverLent) << name;
    }
  }
}

TEST_F(UnopenedCopy, WhatStandsAloneArrivesWithItsModeAndTimes) {
  addNode("pipe", S_IFIFO | 0664);
  addNode("socket", S_IFSOCK | 0751);
  addLink("link", "nowhere");
  const timespec times[] = {{.tv_sec = 1'000'000'000, .tv_nsec = 1},
                            {.tv_sec = 1'234'567'890, .tv_nsec = 123'456'789}};
  for (const std::string name : {"pipe", "socket", "link"}) {
    ASSERT_EQ(::utimensat(AT_FDCWD, at(name).c_str(), times, AT_SYMLINK_NOFOLLOW), 0);
    ASSERT_TRUE(copy(name, "copy of " + name));
    ASSERT_TRUE(copyGuarded(name, "guarded " + name));
    for (const std::string& made : {"copy of " + name, "guarded " + name}) {
      EXPECT_EQ(facts(made).st_mtim.tv_sec, times[1].tv_sec) << made;
      EXPECT_EQ(facts(made).st_mtim.tv_nsec, times[1].tv_nsec) << made;
    }
    EXPECT_EQ(facts("copy of " + name).st_mode, facts(name).st_mode) << name;
  }
  EXPECT_EQ(mode("guarded pipe"), 0644u);
  EXPECT_EQ(mode("guarded socket"), 0751u);
}

TEST_F(UnopenedCopy, DevicesArriveWithTheirModesAndNumbers) {
  if (!isRoot()) GTEST_SKIP() << "only the administrator can make one";
  addFolder("from");
  if (::mknod(at("from/null").c_str(), S_IFCHR | 0600, makedev(1, 3)) != 0)
    GTEST_SKIP() << "this container lets nobody make device nodes";
  addNode("from/loop", S_IFBLK | 0660, makedev(7, 200));
  ASSERT_TRUE(copy());
  for (const std::string name : {"null", "loop"}) {
    EXPECT_EQ(facts("to/" + name).st_mode, facts("from/" + name).st_mode) << name;
    EXPECT_EQ(facts("to/" + name).st_rdev, facts("from/" + name).st_rdev) << name;
  }
}

TEST_F(UnopenedCopy, WhatAFolderHandsDownDoesNotReachPipesAndSockets) {
  addFolder("handing");
  // version 2; owner, group, mask and others rwx, and everything for user 12345
  const std::string list(
      "\2\0\0\0\1\0\7\0\xFF\xFF\xFF\xFF\2\0\7\0\x39\x30\0\0\4\0\7\0\xFF\xFF\xFF\xFF"
      "\x10\0\7\0\xFF\xFF\xFF\xFF\x20\0\7\0\xFF\xFF\xFF\xFF",
      44);
  if (!setAttribute("handing", "system.posix_acl_default", list)) GTEST_SKIP() << "no access lists here";
  ASSERT_EQ(::chmod(at("handing").c_str(), 02777), 0);
  if (isRoot()) {
    ASSERT_EQ(::chown(at("handing").c_str(), 1234, 2345), 0);
  }
  for (const auto& [name, kind] : {std::pair{"pipe", S_IFIFO}, std::pair{"socket", S_IFSOCK}}) {
    addNode(name, kind | 0640);
    const std::string kept = std::string("handing/kept ") + name;
    const std::string guarded = std::string("handing/guarded ") + name;
    ASSERT_TRUE(copy(name, kept));
    ASSERT_TRUE(copyGuarded(name, guarded));
    for (const std::string& made : {kept, guarded}) {
      EXPECT_EQ(attribute(made, "system.posix_acl_access"), "(none)") << made;
      EXPECT_EQ(mode(made), 0640u) << made;
      EXPECT_EQ(facts(made).st_gid, ::getegid()) << made;
    }
  }
}

TEST_F(UnopenedCopy, OwnersAndAttributesOfLinksPipesAndDevicesArriveForTheAdministrator) {
  if (!isRoot()) GTEST_SKIP() << "only the administrator gives files away";
  addFile("from/file");
  addNode("from/pipe", S_IFIFO | 0640);
  addLink("from/a", "file");
  addLink("from/b", "nowhere");
  for (const std::string name : {"from/pipe", "from/a", "from/b"}) {
    ASSERT_EQ(::lchown(at(name).c_str(), 1234, 2345), 0);
    if (!setAttribute(name, "trusted.note", name)) GTEST_SKIP() << "no such attributes here";
  }
  ASSERT_TRUE(copy());
  for (const std::string name : {"pipe", "a", "b"}) {
    EXPECT_EQ(facts("to/" + name).st_uid, 1234u) << name;
    EXPECT_EQ(facts("to/" + name).st_gid, 2345u) << name;
    EXPECT_EQ(attribute("to/" + name, "trusted.note"), "from/" + name);
  }
  EXPECT_EQ(attribute("to/file", "trusted.note"), "(none)");
}

TEST_F(UnopenedCopy, ModesArriveOnAKernelThatCannotChangeThemByDescriptor) {
  addNode("from", S_IFIFO | 0664);
  EXPECT_EQ(statusOf([&] { return forgetChangeOfModeByDescriptor() && copy() ? 0 : 1; }), 0);
  EXPECT_EQ(mode("to"), 0664u);
}

// Where nothing leads to the pipe for certain, its mode is not changed by name.
TEST_F(UnopenedCopy, WithNoWayToTheItemItselfTheCopyFails) {
  if (const auto reason = whyNoOwnMounts()) GTEST_SKIP() << *reason;
  addNode("from", S_IFIFO | 0664);
  EXPECT_EQ(statusOf([&] {
              if (enterOwnMounts() || ::mount("tmpfs", "/proc", "tmpfs", 0, nullptr) != 0 ||
                  !forgetChangeOfModeByDescriptor()) {
                return 2;
              }
              return copy() ? 1 : 0;
            }),
            0);
  EXPECT_EQ(mode("to"), 0600u);
}

}  // namespace
}  // namespace halvorn
