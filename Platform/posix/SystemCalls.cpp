#include "Platform/posix/SystemCalls.h"

#include <limits.h>
#include <stdio.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#ifdef __linux__
#include <linux/openat2.h>
#endif

namespace halvorn::SystemCalls {

std::optional<FileDescriptor> openWithoutLinks(const std::string& path, int flags) {
#ifdef SYS_openat2
  open_how how{};
  how.flags = static_cast<decltype(how.flags)>(flags);
  how.resolve = RESOLVE_NO_SYMLINKS;
  const long result =
      retried([&] { return ::syscall(SYS_openat2, AT_FDCWD, path.c_str(), &how, sizeof how); });
  // Some sandboxes forbid the call; the caller then walks by itself.
  if (result < 0 && (errno == ENOSYS || errno == EPERM || errno == EAGAIN)) return std::nullopt;
  return FileDescriptor(static_cast<int>(result));
#else
  (void)path;
  (void)flags;
  return std::nullopt;
#endif
}

int renameWithoutReplacing(int fromFolder, const char* from, int toFolder, const char* to) {
#if defined(RENAME_NOREPLACE)
  if (::renameat2(fromFolder, from, toFolder, to, RENAME_NOREPLACE) == 0) return 0;
  // Some file systems know no flags.
  if (errno != EINVAL && errno != ENOSYS) return errno;
#elif defined(RENAME_EXCL)
  return ::renameatx_np(fromFolder, from, toFolder, to, RENAME_EXCL) == 0 ? 0 : errno;
#endif
  struct stat facts {};
  if (::fstatat(toFolder, to, &facts, AT_SYMLINK_NOFOLLOW) == 0) return EEXIST;
  return ::renameat(fromFolder, from, toFolder, to) == 0 ? 0 : errno;
}

bool isSameItem(int a, int b) {
  struct stat first {};
  struct stat second {};
  if (::fstat(a, &first) != 0 || ::fstat(b, &second) != 0) return false;
  return first.st_dev == second.st_dev && first.st_ino == second.st_ino;
}

bool isSameFileSystem(int a, int b) {
  struct stat first {};
  struct stat second {};
  return ::fstat(a, &first) == 0 && ::fstat(b, &second) == 0 && first.st_dev == second.st_dev;
}

bool isSameMount(int a, int b) {
  if (!isSameFileSystem(a, b)) return false;
#ifdef STATX_MNT_ID
  struct statx first {};
  struct statx second {};
  if (::statx(a, "", AT_EMPTY_PATH, STATX_MNT_ID, &first) != 0) return true;
  if (::statx(b, "", AT_EMPTY_PATH, STATX_MNT_ID, &second) != 0) return true;
  if ((first.stx_mask & second.stx_mask & STATX_MNT_ID) == 0) return true;
  return first.stx_mnt_id == second.stx_mnt_id;
#else
  return true;
#endif
}

std::optional<std::string> pathOf(int folder) {
  std::string path(static_cast<std::size_t>(PATH_MAX) + 1, '\0');
#ifdef __linux__
  const std::string link = "/proc/self/fd/" + std::to_string(folder);
  const ssize_t size = ::readlink(link.c_str(), path.data(), path.size());
  if (size <= 0 || static_cast<std::size_t>(size) >= path.size() || path[0] != '/') return std::nullopt;
  path.resize(static_cast<std::size_t>(size));
#else
  if (::fcntl(folder, F_GETPATH, path.data()) != 0) return std::nullopt;
  path.resize(path.find('\0'));
#endif
  // A folder that was removed is still said to have a path; only the folder itself may stand there.
  struct stat there {};
  struct stat facts {};
  if (::lstat(path.c_str(), &there) != 0 || ::fstat(folder, &facts) != 0) return std::nullopt;
  if (there.st_dev != facts.st_dev || there.st_ino != facts.st_ino) return std::nullopt;
  return path;
}

bool changeOwner(int item, uid_t user, gid_t group) {
#ifdef AT_EMPTY_PATH
  return ::fchownat(item, "", user, group, AT_EMPTY_PATH) == 0;
#else
  return ::fchown(item, user, group) == 0;
#endif
}

}  // namespace halvorn::SystemCalls
