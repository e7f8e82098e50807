#include "Platform/files/posix/copy/SystemCalls.h"

#include <limits.h>
#include <sched.h>
#include <stdio.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <unistd.h>

#include <algorithm>
#include <thread>

#ifdef __linux__
#include <linux/fs.h>
#include <linux/magic.h>
#include <linux/openat2.h>
#include <sys/vfs.h>
#endif

namespace halvorn::SystemCalls {

std::optional<FileDescriptor> openResolving(int folder, const std::string& path, int flags,
                                            Resolution resolution) {
#ifdef SYS_openat2
  open_how how{};
  how.flags = static_cast<decltype(how.flags)>(flags);
  switch (resolution) {
    case Resolution::WithoutLinks:
      how.resolve = RESOLVE_NO_SYMLINKS;
      break;
    case Resolution::BeneathWithoutLinks:
      how.resolve = RESOLVE_NO_SYMLINKS | RESOLVE_BENEATH;
      break;
    case Resolution::WithoutProcessLinks:
      how.resolve = RESOLVE_NO_MAGICLINKS;
      break;
  }
  const long result = retried([&] { return ::syscall(SYS_openat2, folder, path.c_str(), &how, sizeof how); });
  // Some sandboxes forbid the call; the caller then walks by itself.
  if (result < 0 && (errno == ENOSYS || errno == EPERM || errno == EAGAIN)) return std::nullopt;
  return FileDescriptor(static_cast<int>(result));
#else
  (void)folder;
  (void)path;
  (void)flags;
  (void)resolution;
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
  const std::string link = pathToHeld(folder);
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

FileDescriptor holdItem(int folder, const char* name) {
#if defined(O_PATH)
  constexpr int flags = O_PATH | O_NOFOLLOW | O_CLOEXEC;
#elif defined(O_SYMLINK)
  constexpr int flags = O_RDONLY | O_SYMLINK | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
#else
  constexpr int flags = O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
#endif
  return FileDescriptor(retried([&] { return ::openat(folder, name, flags); }));
}

bool changeMode(int item, mode_t mode) {
#ifdef __linux__
  // The headers may be older than the kernel; the number is the same on every processor but one.
#if defined(SYS_fchmodat2)
  constexpr long changeModeOfItem = SYS_fchmodat2;
#elif defined(__alpha__)
  constexpr long changeModeOfItem = 562;
#else
  constexpr long changeModeOfItem = 452;
#endif
  if (::syscall(changeModeOfItem, item, "", mode, AT_EMPTY_PATH) == 0) return true;
  // Some sandboxes forbid what they do not know.
  if (errno != ENOSYS && errno != EPERM) return false;
  return ::chmod(pathToHeld(item).c_str(), mode) == 0;
#else
  return ::fchmod(item, mode) == 0;
#endif
}

bool changeTimes(int item, const timespec times[2]) {
#ifdef AT_EMPTY_PATH
  return ::utimensat(item, "", times, AT_EMPTY_PATH) == 0;
#else
  return ::futimens(item, times) == 0;
#endif
}

std::optional<std::string> textOfLink(int item, std::size_t room) {
  std::string text(room, '\0');
#ifdef AT_EMPTY_PATH
  const ssize_t size = ::readlinkat(item, "", text.data(), text.size());
#elif defined(O_SYMLINK)
  const ssize_t size = ::freadlink(item, text.data(), text.size());
#else
  const ssize_t size = -1;
#endif
  if (size < 0) return std::nullopt;
  text.resize(static_cast<std::size_t>(size));
  return text;
}

std::string pathToHeld(int item) { return "/proc/self/fd/" + std::to_string(item); }

bool wasChangedSinceItsBirth(int item) {
#ifdef STATX_BTIME
  struct statx facts {};
  if (::statx(item, "", AT_EMPTY_PATH, STATX_CTIME | STATX_BTIME, &facts) != 0) return true;
  if ((facts.stx_mask & STATX_BTIME) == 0) return false;
  constexpr long long second = 1'000'000'000;
  const long long later = (facts.stx_ctime.tv_sec - facts.stx_btime.tv_sec) * second +
                          (static_cast<long long>(facts.stx_ctime.tv_nsec) - facts.stx_btime.tv_nsec);
  // Labels and lists that the system hands down come an instant after the birth; some file systems count
  // changes in coarser steps, and then seem to be before it.
  return later > second;
#else
  (void)item;
  return false;
#endif
}

bool changeOwner(int item, uid_t user, gid_t group) {
#ifdef AT_EMPTY_PATH
  return ::fchownat(item, "", user, group, AT_EMPTY_PATH) == 0;
#else
  return ::fchown(item, user, group) == 0;
#endif
}

ssize_t readEntries(int folder, char* buffer, std::size_t room) {
#ifdef __linux__
  return retried([&] { return ::syscall(SYS_getdents64, folder, buffer, room); });
#else
  long position = 0;
  return retried([&] { return ::getdirentries(folder, buffer, static_cast<int>(room), &position); });
#endif
}

ssize_t readIfInMemory(int file, char* buffer, std::size_t count, off_t offset) {
#ifdef RWF_NOWAIT
  const iovec piece{.iov_base = buffer, .iov_len = count};
  return retried([&] { return ::preadv2(file, &piece, 1, offset, RWF_NOWAIT); });
#else
  (void)file, (void)buffer, (void)count, (void)offset;
  return -1;
#endif
}

void fetchAhead(int file, off_t start, off_t count) {
#ifdef __linux__
  (void)::posix_fadvise(file, start, count, POSIX_FADV_WILLNEED);
#else
  (void)file, (void)start, (void)count;
#endif
}

void* mapToRead(int file, off_t start, std::size_t size) {
#ifdef MAP_POPULATE
  constexpr int flags = MAP_SHARED | MAP_POPULATE;
#else
  constexpr int flags = MAP_SHARED;
#endif
  void* const memory = ::mmap(nullptr, size, PROT_READ, flags, file, start);
  return memory == MAP_FAILED ? nullptr : memory;
}

bool clone(int source, int target) {
#ifdef FICLONE
  return ::ioctl(target, FICLONE, source) == 0;
#else
  (void)source, (void)target;
  return false;
#endif
}

ssize_t copyPart(int source, int target, off_t offset, off_t count) {
#ifdef __linux__
  const ssize_t copied = retried([&] {
    off64_t from = offset;
    off64_t to = offset;
    return ::copy_file_range(source, &from, target, &to, static_cast<std::size_t>(count), 0);
  });
  const bool isBeyondIt = copied < 0 && (errno == EXDEV || errno == ENOSYS || errno == EINVAL ||
                                         errno == EOPNOTSUPP || errno == EPERM || errno == ETXTBSY);
  return isBeyondIt ? 0 : copied;
#else
  (void)source, (void)target, (void)offset, (void)count;
  return 0;
#endif
}

bool hasOneTree(int file) {
#ifdef BTRFS_SUPER_MAGIC
  struct statfs facts {};
  return ::fstatfs(file, &facts) == 0 && facts.f_type == BTRFS_SUPER_MAGIC;
#else
  (void)file;
  return false;
#endif
}

bool reserve(int file, off_t size) {
#ifdef __linux__
  if (retried([&] { return ::fallocate(file, 0, 0, size); }) == 0) return true;
  return errno != ENOSPC && errno != EDQUOT && errno != EFBIG && errno != EIO;
#else
  (void)file, (void)size;
  return true;
#endif
}

unsigned usableProcessors() {
#ifdef __linux__
  // The library's own count takes in those that this process may not use.
  cpu_set_t allowed;
  if (::sched_getaffinity(0, sizeof allowed, &allowed) == 0)
    return static_cast<unsigned>(CPU_COUNT(&allowed));
#endif
  return std::max(1u, std::thread::hardware_concurrency());
}

}  // namespace halvorn::SystemCalls
