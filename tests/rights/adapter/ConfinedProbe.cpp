// Confines itself as the administrator's tool does, then does one thing that it is told.
//
// confined-probe files CALL | confined-probe trees READABLE WRITABLE ALSO_WRITABLE
#include <fcntl.h>
#include <linux/fs.h>
#include <linux/io_uring.h>
#include <sched.h>
#include <signal.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <sys/ptrace.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <termios.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <map>
#include <string>
#include <thread>

#include "Platform/rights/posix/Confinement.h"

namespace {

using halvorn::Confinement::Answer;
using Calls = std::map<std::string, std::function<long()>>;

template <typename... Arguments>
std::function<long()> call(long number, Arguments... arguments) {
  return [=] { return ::syscall(number, arguments...); };
}

// Which flags a file system gave its inodes; looks as harmless as the one that is allowed.
long askForFlags() {
  int flags = 0;
  return ::ioctl(STDIN_FILENO, FS_IOC_GETFLAGS, &flags);
}

long raiseLimit() {
  const rlimit limit{.rlim_cur = 64, .rlim_max = 64};
  return ::syscall(SYS_prlimit64, 0, RLIMIT_NOFILE, &limit, nullptr);
}

long makeRunnable() {
  void* const page = ::mmap(nullptr, 4096, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  return ::mprotect(page, 4096, PROT_READ | PROT_EXEC);
}

long mapRunnable() {
  void* const page =
      ::mmap(nullptr, 4096, PROT_READ | PROT_WRITE | PROT_EXEC, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  return page == MAP_FAILED ? -1 : 0;
}

long runThread() {
  long answer = -1;
  std::thread([&] { answer = 0; }).join();
  return answer;
}

long makeFile(mode_t mode) {
  const int file = ::openat(AT_FDCWD, "made", O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode);
  return file < 0 ? -1 : 0;
}

long changeMode(mode_t mode) {
  const int file = ::openat(AT_FDCWD, ".", O_RDONLY | O_CLOEXEC);
  return ::fchmod(file, mode);
}

const char* const kNoWords[] = {nullptr};

Calls calls() {
  constexpr long newerThanTheFilter = 1000;
  constexpr dev_t zeroDevice = 0x105;
  return {
      {"socket of the network", call(SYS_socket, AF_INET, SOCK_STREAM, 0)},
      {"socket of this machine", call(SYS_socket, AF_UNIX, SOCK_STREAM, 0)},
      {"pair of sockets", call(SYS_socketpair, AF_UNIX, SOCK_STREAM, 0, nullptr)},
      {"connect", call(SYS_connect, 0, nullptr, 0)},
      {"bind", call(SYS_bind, 0, nullptr, 0)},
      {"send", call(SYS_sendto, 1, "x", 1, 0, nullptr, 0)},
      {"execve", call(SYS_execve, "/bin/true", kNoWords, kNoWords)},
      {"execveat", call(SYS_execveat, AT_FDCWD, "/bin/true", kNoWords, kNoWords, 0)},
      {"a process", call(SYS_clone, SIGCHLD, nullptr, nullptr, nullptr, nullptr)},
      {"ptrace", call(SYS_ptrace, PTRACE_ATTACH, 1, nullptr, nullptr)},
      {"reading another's memory", call(SYS_process_vm_readv, 1, nullptr, 0, nullptr, 0, 0)},
      {"writing another's memory", call(SYS_process_vm_writev, 1, nullptr, 0, nullptr, 0, 0)},
      {"holding another", call(SYS_pidfd_open, 1, 0)},
      {"another's descriptor", call(SYS_pidfd_getfd, 0, 0, 0)},
      {"kill", call(SYS_kill, 1, 0)},
      {"tgkill of another", call(SYS_tgkill, 1, 1, SIGABRT)},
      {"tgkill with another signal", [] { return ::syscall(SYS_tgkill, ::getpid(), ::gettid(), SIGTERM); }},
      {"mount", call(SYS_mount, "none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr)},
      {"umount", call(SYS_umount2, "/nowhere", 0)},
      {"a mount of the new kind", call(SYS_fsopen, "tmpfs", 0)},
      {"moving a mount", call(SYS_move_mount, -1, "", -1, "", 0)},
      {"pivot_root", call(SYS_pivot_root, ".", ".")},
      {"chroot", call(SYS_chroot, "/")},
      {"unshare", call(SYS_unshare, CLONE_NEWUSER)},
      {"setns", call(SYS_setns, 0, 0)},
      {"setuid", call(SYS_setuid, 0)},
      {"setresuid", call(SYS_setresuid, 0, 0, 0)},
      {"setgid", call(SYS_setgid, 0)},
      {"capset", call(SYS_capset, nullptr, nullptr)},
      {"prctl", call(SYS_prctl, PR_SET_DUMPABLE, 1, 0, 0, 0)},
      {"another filter", call(SYS_seccomp, 1, 0, nullptr)},
      {"personality", call(SYS_personality, 0)},
      {"raising a limit", raiseLimit},
      {"keyctl", call(SYS_keyctl, 0, 0)},
      {"bpf", call(SYS_bpf, 0, nullptr, 0)},
      {"perf_event_open", call(SYS_perf_event_open, nullptr, 0, 0, 0, 0)},
      {"io_uring", call(SYS_io_uring_setup, 1, nullptr)},
      {"userfaultfd", call(SYS_userfaultfd, 0)},
      {"memfd_create", call(SYS_memfd_create, "x", 0)},
      {"a file by its handle", call(SYS_open_by_handle_at, AT_FDCWD, nullptr, 0)},
      {"init_module", call(SYS_init_module, nullptr, 0, "")},
      {"kexec_load", call(SYS_kexec_load, 0, 0, nullptr, 0)},
      {"reboot", call(SYS_reboot, 0, 0, 0, nullptr)},
      {"swapon", call(SYS_swapon, "/nowhere", 0)},
      {"sethostname", call(SYS_sethostname, "x", 1)},
      {"clock_settime", call(SYS_clock_settime, 0, nullptr)},
      {"quotactl", call(SYS_quotactl, 0, nullptr, 0, nullptr)},
      {"a device", call(SYS_mknodat, AT_FDCWD, "made", S_IFCHR | 0600, zeroDevice)},
      {"a disk", call(SYS_mknodat, AT_FDCWD, "made", S_IFBLK | 0600, zeroDevice)},
      {"ioctl", askForFlags},
      {"typing on a terminal", call(SYS_ioctl, 0, TIOCSTI, "x")},
      {"who gets a signal of a file", call(SYS_fcntl, 0, F_SETOWN, 1)},
      {"a lock", call(SYS_fcntl, 0, F_SETLKW, nullptr)},
      {"memory made runnable", makeRunnable},
      {"memory mapped runnable", mapRunnable},
      {"another working folder", call(SYS_chdir, "/")},
      {"a call that is newer", call(newerThanTheFilter)},
      {"a file with set-user-id", [] { return makeFile(04755); }},
      {"a folder with set-group-id", [] { return changeMode(02755); }},
      {"a pipe with set-user-id", call(SYS_mknodat, AT_FDCWD, "made", S_IFIFO | 04600, 0)},
      {"a file", [] { return makeFile(0644); }},
      {"a mode", [] { return changeMode(0755); }},
      {"a pipe", call(SYS_mknodat, AT_FDCWD, "made", S_IFIFO | 0600, 0)},
      {"a thread", runThread},
      {"abort", []() -> long { std::abort(); }},
  };
}

int answerOf(long result) {
  std::printf("%s\n", result < 0 ? ::strerrorname_np(errno) : "done");
  return 0;
}

int doCall(const std::string& name) {
  const Calls all = calls();
  if (name == "list") {
    for (const auto& [each, ignored] : all) std::printf("%s\n", each.c_str());
    return 0;
  }
  if (!all.contains(name)) return 3;
  const auto what = all.at(name);
  if (halvorn::Confinement::keepToFiles() != Answer::Done) return 4;
  return answerOf(what());
}

int tryTrees(const char* readable, const char* writable, const char* alsoWritable) {
  halvorn::Confinement::Trees trees;
  trees.toRead.push_back(::open(readable, O_PATH | O_CLOEXEC));
  for (const char* path : {writable, alsoWritable}) trees.toWrite.push_back(::open(path, O_PATH | O_CLOEXEC));
  const std::string outside = ::get_current_dir_name();
  switch (halvorn::Confinement::keepToTrees(trees)) {
    case Answer::Done:
      break;
    case Answer::NotHere:
      std::printf("not here\n");
      return 0;
    case Answer::Failed:
      return 4;
  }
  const std::string in = std::string(readable) + "/";
  const std::string to = std::string(writable) + "/";
  const std::string also = std::string(alsoWritable) + "/";
  const std::string out = outside + "/";
  const auto say = [](const char* what, long result) {
    std::printf("%s: ", what);
    (void)answerOf(result);
  };
  say("read in", ::open((in + "file").c_str(), O_RDONLY | O_CLOEXEC));
  say("list in", ::open(in.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  say("write in", ::open((in + "file").c_str(), O_WRONLY | O_CLOEXEC));
  say("make in", ::mkdir((in + "new").c_str(), 0700));
  say("remove in", ::unlink((in + "file").c_str()));
  say("make", ::open((to + "new").c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
  say("write", ::open((to + "new").c_str(), O_WRONLY | O_TRUNC | O_CLOEXEC));
  say("folder", ::mkdir((to + "folder").c_str(), 0700));
  say("pipe", ::mkfifo((to + "pipe").c_str(), 0600));
  say("link", ::symlink("x", (to + "link").c_str()));
  say("device", ::mknod((to + "device").c_str(), S_IFCHR | 0600, 0x105));
  say("move", ::rename((to + "folder").c_str(), (also + "folder").c_str()));
  say("remove", ::unlink((to + "new").c_str()));
  say("move out", ::rename((to + "link").c_str(), (out + "link").c_str()));
  say("read out", ::open((out + "file").c_str(), O_RDONLY | O_CLOEXEC));
  say("make out", ::mkdir((out + "new").c_str(), 0700));
  say("remove out", ::unlink((out + "file").c_str()));
  say("look out", ::access((out + "file").c_str(), F_OK));
  return 0;
}

}  // namespace

int main(int argumentCount, char** arguments) {
  ::setvbuf(stdout, nullptr, _IONBF, 0);
  ::umask(0);
  if (::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0) return 5;
  if (argumentCount == 3 && std::string(arguments[1]) == "files") return doCall(arguments[2]);
  if (argumentCount == 5 && std::string(arguments[1]) == "trees")
    return tryTrees(arguments[2], arguments[3], arguments[4]);
  return 2;
}
