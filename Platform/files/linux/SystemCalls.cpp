#include "Platform/files/posix/copy/SystemCalls.h"

#include <dirent.h>
#include <fcntl.h>
#include <limits.h>
#include <linux/fs.h>
#include <linux/magic.h>
#include <linux/openat2.h>
#include <sched.h>
#include <stdio.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <algorithm>
#include <thread>

#include "Platform/files/linux/HeldItemPath.h"
#include "Platform/files/posix/copy/FolderListing.h"

namespace halvorn::SystemCalls {

const int openPath = O_PATH;
const int openQuietly = O_NOATIME;

std::optional<FileDescriptor> openResolving(int folder, const std::string& path, int flags,
                                            Resolution resolution) {
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
}

int renameWithoutReplacing(int fromFolder, const char* from, int toFolder, const char* to) {
  if (::renameat2(fromFolder, from, toFolder, to, RENAME_NOREPLACE) == 0) return 0;
  // Some file systems know no flags.
  if (errno != EINVAL && errno != ENOSYS) return errno;
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
  struct statx first {};
  struct statx second {};
  if (::statx(a, "", AT_EMPTY_PATH, STATX_MNT_ID, &first) != 0) return true;
  if (::statx(b, "", AT_EMPTY_PATH, STATX_MNT_ID, &second) != 0) return true;
  if ((first.stx_mask & second.stx_mask & STATX_MNT_ID) == 0) return true;
  return first.stx_mnt_id == second.stx_mnt_id;
}

std::optional<std::string> pathOf(int folder) {
  std::string path(static_cast<std::size_t>(PATH_MAX) + 1, '\0');
  const std::string link = heldItemPath(folder);
  const ssize_t size = ::readlink(link.c_str(), path.data(), path.size());
  if (size <= 0 || static_cast<std::size_t>(size) >= path.size() || path[0] != '/') return std::nullopt;
  path.resize(static_cast<std::size_t>(size));
  // A folder that was removed is still said to have a path; only the folder itself may stand there.
  struct stat there {};
  struct stat facts {};
  if (::lstat(path.c_str(), &there) != 0 || ::fstat(folder, &facts) != 0) return std::nullopt;
  if (there.st_dev != facts.st_dev || there.st_ino != facts.st_ino) return std::nullopt;
  return path;
}

FileDescriptor holdItem(int folder, const char* name) {
  constexpr int flags = O_PATH | O_NOFOLLOW | O_CLOEXEC;
  return FileDescriptor(retried([&] { return ::openat(folder, name, flags); }));
}

bool changeMode(int item, mode_t mode) {
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
  return ::chmod(heldItemPath(item).c_str(), mode) == 0;
}

bool changeTimes(int item, const timespec times[2]) {
  return ::utimensat(item, "", times, AT_EMPTY_PATH) == 0;
}

std::optional<std::string> textOfLink(int item, std::size_t room) {
  std::string text(room, '\0');
  const ssize_t size = ::readlinkat(item, "", text.data(), text.size());
  if (size < 0) return std::nullopt;
  text.resize(static_cast<std::size_t>(size));
  return text;
}

bool wasChangedSinceItsBirth(int item) {
  struct statx facts {};
  if (::statx(item, "", AT_EMPTY_PATH, STATX_CTIME | STATX_BTIME, &facts) != 0) return true;
  if ((facts.stx_mask & STATX_BTIME) == 0) return false;
  constexpr long long second = 1'000'000'000;
  const long long later = (facts.stx_ctime.tv_sec - facts.stx_btime.tv_sec) * second +
                          (static_cast<long long>(facts.stx_ctime.tv_nsec) - facts.stx_btime.tv_nsec);
  // Labels and lists that the system hands down come an instant after the birth; some file systems count
  // changes in coarser steps, and then seem to be before it.
  return later > second;
}

bool changeOwner(int item, uid_t user, gid_t group) {
  return ::fchownat(item, "", user, group, AT_EMPTY_PATH) == 0;
}

bool makeNode(int folder, const char* name, mode_t mode, dev_t device) {
  return ::mknodat(folder, name, mode, device) == 0;
}

std::array<timespec, 2> timesOf(const struct stat& facts) { return {facts.st_atim, facts.st_mtim}; }

ssize_t readEntries(int folder, char* buffer, std::size_t room, std::vector<FolderEntry>& entries) {
  const ssize_t size = retried([&] { return ::syscall(SYS_getdents64, folder, buffer, room); });
  for (ssize_t at = 0; at < size;) {
    const auto* record = reinterpret_cast<const dirent64*>(buffer + at);
    at += record->d_reclen;
    entries.push_back({.number = record->d_ino, .type = record->d_type, .name = record->d_name});
  }
  return size;
}

ssize_t readIfInMemory(int file, char* buffer, std::size_t count, off_t offset) {
  const iovec piece{.iov_base = buffer, .iov_len = count};
  return retried([&] { return ::preadv2(file, &piece, 1, offset, RWF_NOWAIT); });
}

void fetchAhead(int file, off_t start, off_t count) {
  (void)::posix_fadvise(file, start, count, POSIX_FADV_WILLNEED);
}

void* mapToRead(int file, off_t start, std::size_t size) {
  constexpr int flags = MAP_SHARED | MAP_POPULATE;
  void* const memory = ::mmap(nullptr, size, PROT_READ, flags, file, start);
  return memory == MAP_FAILED ? nullptr : memory;
}

bool clone(int source, int target) { return ::ioctl(target, FICLONE, source) == 0; }

ssize_t copyPart(int source, int target, off_t offset, off_t count) {
  const ssize_t copied = retried([&] {
    off64_t from = offset;
    off64_t to = offset;
    return ::copy_file_range(source, &from, target, &to, static_cast<std::size_t>(count), 0);
  });
  const bool isBeyondIt = copied < 0 && (errno == EXDEV || errno == ENOSYS || errno == EINVAL ||
                                         errno == EOPNOTSUPP || errno == EPERM || errno == ETXTBSY);
  return isBeyondIt ? 0 : copied;
}

bool hasOneTree(int file) {
  struct statfs facts {};
  return ::fstatfs(file, &facts) == 0 && facts.f_type == BTRFS_SUPER_MAGIC;
}

bool reserve(int file, off_t size) {
  if (retried([&] { return ::fallocate(file, 0, 0, size); }) == 0) return true;
  return errno != ENOSPC && errno != EDQUOT && errno != EFBIG && errno != EIO;
}

unsigned usableProcessors() {
  // The library's own count takes in those that this process may not use.
  cpu_set_t allowed;
  if (::sched_getaffinity(0, sizeof allowed, &allowed) == 0)
    return static_cast<unsigned>(CPU_COUNT(&allowed));
  return std::max(1u, std::thread::hardware_concurrency());
}

}  // namespace halvorn::SystemCalls
