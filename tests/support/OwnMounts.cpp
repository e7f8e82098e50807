#include "tests/support/OwnMounts.h"

#include <sched.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <fstream>

namespace halvorn {
namespace {

// The accounts that this process knows, each as itself.
bool mapAccounts(pid_t process) {
  const std::string folder = "/proc/" + std::to_string(process);
  bool isDone = true;
  for (const char* map : {"/uid_map", "/gid_map"}) {
    unsigned long first = 0, outside = 0, count = 0;
    std::ifstream own(std::string("/proc/self") + map);
    own >> first >> outside >> count;
    std::ofstream file(folder + map);
    file << first << ' ' << first << ' ' << count << std::flush;
    isDone = isDone && own && file;
  }
  return isDone;
}

// The accounts of a new name space can only be told from outside of it.
bool enterOwnUserNamespace() {
  std::array<int, 2> entered{};
  if (::pipe(entered.data()) != 0) return false;
  const pid_t process = ::getpid();
  const pid_t outside = ::fork();
  if (outside == 0) {
    ::close(entered[1]);
    char byte = 0;
    ::_exit(::read(entered[0], &byte, 1) == 1 && mapAccounts(process) ? 0 : 1);
  }
  ::close(entered[0]);
  const bool isEntered = outside > 0 && ::unshare(CLONE_NEWUSER | CLONE_NEWNS) == 0;
  const int error = errno;
  const bool isTold = isEntered && ::write(entered[1], "x", 1) == 1;
  ::close(entered[1]);
  int status = 1;
  if (outside > 0) ::waitpid(outside, &status, 0);
  errno = error;
  return isTold && status == 0 && ::setresgid(0, 0, 0) == 0 && ::setresuid(0, 0, 0) == 0;
}

bool enter() {
  if (::geteuid() != 0) return false;
  if (::unshare(CLONE_NEWNS) != 0 && !enterOwnUserNamespace()) return false;
  return ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
}

std::string reason() {
  return ::geteuid() != 0
             ? "only root mounts: run the tests as root"
             : "no mounts of its own can be had: run the tests on a machine, or in a container that is "
               "started with --cap-add SYS_ADMIN";
}

}  // namespace

std::optional<std::string> enterOwnMounts() {
  static const bool isDone = enter();
  return isDone ? std::nullopt : std::optional(reason());
}

std::optional<std::string> whyNoOwnMounts() {
  const pid_t attempt = ::fork();
  if (attempt == 0) ::_exit(enter() ? 0 : 1);
  int status = 1;
  if (attempt > 0) ::waitpid(attempt, &status, 0);
  return status == 0 ? std::nullopt : std::optional(reason());
}

bool canMakeDevices(const std::string& folder) {
  const std::string device = folder + "/device of nobody";
  const dev_t null = makedev(1, 3);
  return ::mknod(device.c_str(), S_IFCHR | 0600, null) == 0 && ::unlink(device.c_str()) == 0;
}

bool canMakeQuickAgain() {
  const pid_t slow = ::fork();
  if (slow == 0) {
    const sched_param usual{};
    const bool isSlow =
        ::setpriority(PRIO_PROCESS, 0, 19) == 0 && ::sched_setscheduler(0, SCHED_IDLE, &usual) == 0;
    const bool isQuick =
        ::sched_setscheduler(0, SCHED_OTHER, &usual) == 0 && ::setpriority(PRIO_PROCESS, 0, 0) == 0;
    ::_exit(isSlow && isQuick ? 0 : 1);
  }
  int status = 1;
  return slow > 0 && ::waitpid(slow, &status, 0) == slow && status == 0;
}

}  // namespace halvorn
