#include <fcntl.h>
#include <linux/audit.h>
#include <linux/filter.h>
#include <linux/fs.h>
#include <linux/seccomp.h>
#include <sched.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstddef>
#include <cstdint>

#include "Platform/rights/posix/Confinement.h"

namespace halvorn::Confinement {
namespace {

#if defined(__x86_64__)
constexpr std::uint32_t kProcessor = AUDIT_ARCH_X86_64;
#elif defined(__aarch64__)
constexpr std::uint32_t kProcessor = AUDIT_ARCH_AARCH64;
#elif defined(__riscv) && __riscv_xlen == 64
constexpr std::uint32_t kProcessor = AUDIT_ARCH_RISCV64;
#else
constexpr std::uint32_t kProcessor = 0;  // its calls are other ones
#endif

// The headers may be older than the kernel; these numbers are the same on all three.
constexpr std::uint32_t kChangeModeOfItem = 452;
constexpr std::uint32_t kNewestKnown = kChangeModeOfItem;

constexpr std::uint32_t kAllowed = SECCOMP_RET_ALLOW;
constexpr std::uint32_t kEnd = SECCOMP_RET_KILL_PROCESS;
constexpr std::uint32_t kNotHere = SECCOMP_RET_ERRNO | ENOSYS;
constexpr std::uint32_t kRefused = SECCOMP_RET_ERRNO | EPERM;

constexpr std::uint32_t kAllBits = 0xFFFFFFFF;
constexpr std::uint32_t kSetIdBits = S_ISUID | S_ISGID;

// Half of an argument must have one of these values in the bits of the mask.
struct Condition {
  unsigned argument = 0;
  std::uint32_t mask = kAllBits;
  std::vector<std::uint32_t> values = {};
  bool isUpperHalf = false;
};

struct Rule {
  std::vector<long> calls;
  std::vector<Condition> conditions = {};
  std::uint32_t otherwise = kEnd;
};

// With these, nothing leaves this process but what it does to files it has reached.
std::vector<long> plainCalls() {
  std::vector<long> calls{
      // Time, memory, threads, itself.
      SYS_clock_gettime, SYS_clock_nanosleep, SYS_nanosleep, SYS_restart_syscall, SYS_brk, SYS_munmap,
      SYS_mremap, SYS_madvise, SYS_futex, SYS_set_robust_list, SYS_rseq, SYS_sched_yield,
      SYS_sched_getaffinity, SYS_getpid, SYS_gettid, SYS_getuid, SYS_geteuid, SYS_getgid, SYS_getegid,
      SYS_getgroups, SYS_getrandom, SYS_sysinfo, SYS_exit, SYS_exit_group, SYS_rt_sigaction,
      SYS_rt_sigprocmask, SYS_rt_sigpending, SYS_rt_sigtimedwait, SYS_rt_sigreturn,
      // The person's rights to files, and back.
      SYS_setfsuid, SYS_setfsgid, SYS_setgroups,
      // Open files.
      SYS_read, SYS_write, SYS_writev, SYS_pread64, SYS_pwrite64, SYS_preadv2, SYS_lseek, SYS_close,
      SYS_fstat, SYS_fstatfs, SYS_getdents64, SYS_copy_file_range, SYS_fallocate, SYS_fadvise64,
      SYS_ftruncate, SYS_fchown, SYS_fgetxattr, SYS_flistxattr, SYS_fsetxattr, SYS_fremovexattr,
      // Named files.
      SYS_openat2, SYS_newfstatat, SYS_statx, SYS_faccessat, SYS_faccessat2, SYS_readlinkat, SYS_mkdirat,
      SYS_symlinkat, SYS_linkat, SYS_unlinkat, SYS_renameat2, SYS_fchownat, SYS_utimensat, SYS_lgetxattr,
      SYS_llistxattr, SYS_setxattr, SYS_removexattr};
  // Older forms, on processors that have them.
#ifdef SYS_open
  calls.insert(calls.end(), {SYS_stat, SYS_lstat, SYS_access, SYS_readlink, SYS_mkdir, SYS_rename});
#endif
#ifdef SYS_renameat
  calls.push_back(SYS_renameat);
#endif
  return calls;
}

std::vector<Rule> rules() {
  const auto ownId = static_cast<std::uint32_t>(::getpid());
  const auto withoutSetId = [](unsigned argument) {
    return Condition{.argument = argument, .mask = kSetIdBits, .values = {0}};
  };
  const auto oneOf = [](unsigned argument, std::vector<std::uint32_t> values) {
    return Condition{.argument = argument, .values = std::move(values)};
  };
  const Condition notRunnable{.argument = 2, .mask = PROT_EXEC, .values = {0}};
  std::vector<Rule> all{
      {.calls = {SYS_openat}, .conditions = {withoutSetId(3)}, .otherwise = kRefused},
      {.calls = {SYS_fchmod}, .conditions = {withoutSetId(1)}, .otherwise = kRefused},
      {.calls = {SYS_fchmodat, kChangeModeOfItem}, .conditions = {withoutSetId(2)}, .otherwise = kRefused},
      {.calls = plainCalls()},
      {.calls = {SYS_mmap, SYS_mprotect}, .conditions = {notRunnable}},
      {.calls = {SYS_fcntl}, .conditions = {oneOf(1, {F_DUPFD_CLOEXEC, F_GETFD, F_SETFD, F_GETFL})}},
      // Two files that share their blocks.
      {.calls = {SYS_ioctl}, .conditions = {oneOf(1, {FICLONE})}},
      {.calls = {SYS_mknodat},
       .conditions = {{.argument = 2, .mask = S_IFMT, .values = {S_IFIFO, S_IFSOCK}}, withoutSetId(2)}},
      // The newer one keeps its flags in memory, where nobody can look; without it the library takes this one.
      {.calls = {SYS_clone}, .conditions = {{.argument = 0, .mask = CLONE_THREAD, .values = {CLONE_THREAD}}}},
      {.calls = {SYS_clone3}, .conditions = {oneOf(0, {})}, .otherwise = kNotHere},
      // A program that gives up.
      {.calls = {SYS_tgkill}, .conditions = {oneOf(0, {ownId}), oneOf(2, {SIGABRT})}},
      // Asking for a limit, and not setting one.
      {.calls = {SYS_prlimit64},
       .conditions = {oneOf(2, {0}), {.argument = 2, .values = {0}, .isUpperHalf = true}}}};
#ifdef SYS_open
  all.push_back({.calls = {SYS_open}, .conditions = {withoutSetId(2)}, .otherwise = kRefused});
  all.push_back({.calls = {SYS_chmod}, .conditions = {withoutSetId(1)}, .otherwise = kRefused});
#endif
  return all;
}

class Program {
 public:
  Program() {
    load(offsetof(seccomp_data, arch));
    jumpIfEqual(kProcessor, 1, 0);
    answer(kEnd);
    load(offsetof(seccomp_data, nr));
    // Nobody looked at it yet. Libraries that know it do without where it is missing.
    add(BPF_JUMP(BPF_JMP | BPF_JGT | BPF_K, kNewestKnown, 0, 1));
    answer(kNotHere);
    for (const Rule& rule : rules()) {
      for (const long call : rule.calls) addRule(static_cast<std::uint32_t>(call), rule);
    }
    answer(kEnd);
  }

  // Fails: -1, errno.
  long apply() {
    const sock_fprog program{static_cast<unsigned short>(code_.size()), code_.data()};
    return ::syscall(SYS_seccomp, SECCOMP_SET_MODE_FILTER, 0, &program);
  }

 private:
  void add(const sock_filter& step) { code_.push_back(step); }
  void load(std::size_t offset) {
    add(BPF_STMT(BPF_LD | BPF_W | BPF_ABS, static_cast<std::uint32_t>(offset)));
  }
  void answer(std::uint32_t action) { add(BPF_STMT(BPF_RET | BPF_K, action)); }
  void jumpIfEqual(std::uint32_t value, std::size_t overIfSo, std::size_t overIfNot) {
    add(BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, value, static_cast<std::uint8_t>(overIfSo),
                 static_cast<std::uint8_t>(overIfNot)));
  }

  void addRule(std::uint32_t call, const Rule& rule) {
    std::size_t steps = 1;
    for (const Condition& condition : rule.conditions) steps += 3 + condition.values.size();
    jumpIfEqual(call, 0, steps);
    for (const Condition& condition : rule.conditions) addCondition(condition, rule.otherwise);
    answer(kAllowed);
  }

  void addCondition(const Condition& condition, std::uint32_t otherwise) {
    // The lower half comes first on all processors named above.
    load(offsetof(seccomp_data, args) + condition.argument * sizeof(std::uint64_t) +
         (condition.isUpperHalf ? sizeof(std::uint32_t) : 0));
    add(BPF_STMT(BPF_ALU | BPF_AND | BPF_K, condition.mask));
    const std::size_t count = condition.values.size();
    for (std::size_t i = 0; i < count; ++i) jumpIfEqual(condition.values[i], count - i, 0);
    answer(otherwise);
  }

  std::vector<sock_filter> code_;
};

}  // namespace

Answer keepToFiles() {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
  return Answer::NotHere;  // a sanitized program makes calls of its own
#endif
  if (kProcessor == 0) return Answer::NotHere;
  if (Program().apply() == 0) return Answer::Done;
  return errno == ENOSYS || errno == EINVAL ? Answer::NotHere : Answer::Failed;
}

}  // namespace halvorn::Confinement
