#include "Platform/files/posix/copy/SystemCalls.h"

#include <dirent.h>
#include <fcntl.h>
#include <limits.h>
#include <stdio.h>
#include <sys/attr.h>
#include <sys/mman.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/vnode.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <thread>

#include "Platform/files/posix/copy/FolderListing.h"

namespace halvorn::SystemCalls {
namespace {

unsigned char entryType(std::uint32_t kind) {
  switch (kind) {
    case VREG:
      return DT_REG;
    case VDIR:
      return DT_DIR;
    case VLNK:
      return DT_LNK;
    case VBLK:
      return DT_BLK;
    case VCHR:
      return DT_CHR;
    case VSOCK:
      return DT_SOCK;
    case VFIFO:
      return DT_FIFO;
    default:
      return DT_UNKNOWN;
  }
}

// What getattrlistbulk() writes for each entry, of the attributes that are asked for; they stand unaligned.
template <typename Value>
Value valueAt(const char*& place) {
  Value value;
  std::memcpy(&value, place, sizeof value);
  place += sizeof value;
  return value;
}

FolderEntry entryAt(const char* place) {
  FolderEntry entry;
  (void)valueAt<std::uint32_t>(place);
  const auto given = valueAt<attribute_set_t>(place);
  if ((given.commonattr & ATTR_CMN_NAME) != 0) {
    const char* const start = place;
    entry.name = start + valueAt<attrreference_t>(place).attr_dataoffset;
  }
  if ((given.commonattr & ATTR_CMN_OBJTYPE) != 0) entry.type = entryType(valueAt<std::uint32_t>(place));
  if ((given.commonattr & ATTR_CMN_FILEID) != 0) entry.number = valueAt<std::uint64_t>(place);
  return entry;
}

}  // namespace

// There is no opening that only names.
const int openPath = O_RDONLY;
const int openQuietly = 0;

// A flag that an older kernel does not know would be no refusal.
std::optional<FileDescriptor> openResolving(int folder, const std::string& path, int flags,
                                            Resolution resolution) {
  if (resolution != Resolution::WithoutProcessLinks) return std::nullopt;
  return FileDescriptor(retried([&] { return ::openat(folder, path.c_str(), flags); }));
}

int renameWithoutReplacing(int fromFolder, const char* from, int toFolder, const char* to) {
  if (::renameatx_np(fromFolder, from, toFolder, to, RENAME_EXCL) == 0) return 0;
  // Some file systems know no flags.
  if (errno != EINVAL && errno != ENOTSUP) return errno;
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

// A file system is mounted once.
bool isSameMount(int a, int b) { return isSameFileSystem(a, b); }

std::optional<ItemNumbers> topsOfMounts(int item) {
  struct statfs record {};
  struct stat top {};
  if (::fstatfs(item, &record) != 0 || ::stat(record.f_mntonname, &top) != 0) return std::nullopt;
  struct stat facts {};
  if (::fstat(item, &facts) != 0 || facts.st_dev != top.st_dev) return std::nullopt;
  return ItemNumbers{{top.st_dev, top.st_ino}};
}

std::optional<std::string> pathOf(int folder) {
  char path[PATH_MAX] = {};
  if (::fcntl(folder, F_GETPATH, path) != 0 || path[0] != '/') return std::nullopt;
  struct stat there {};
  struct stat facts {};
  if (::lstat(path, &there) != 0 || ::fstat(folder, &facts) != 0) return std::nullopt;
  if (there.st_dev != facts.st_dev || there.st_ino != facts.st_ino) return std::nullopt;
  return std::string(path);
}

FileDescriptor holdItem(int folder, const char* name) {
  constexpr int flags = O_EVTONLY | O_SYMLINK | O_NONBLOCK | O_CLOEXEC;
  return FileDescriptor(retried([&] { return ::openat(folder, name, flags); }));
}

bool changeOwner(int item, uid_t user, gid_t group) { return ::fchown(item, user, group) == 0; }
bool changeMode(int item, mode_t mode) { return ::fchmod(item, mode) == 0; }
bool changeTimes(int item, const timespec times[2]) { return ::futimens(item, times) == 0; }

std::optional<std::string> textOfLink(int item, std::size_t room) {
  const auto path = pathOf(item);
  std::string text(room, '\0');
  const ssize_t size = path ? ::readlink(path->c_str(), text.data(), text.size()) : -1;
  if (size < 0 || !pathOf(item)) return std::nullopt;
  text.resize(static_cast<std::size_t>(size));
  return text;
}

bool wasChangedSinceItsBirth(int item) {
  struct stat facts {};
  if (::fstat(item, &facts) != 0) return true;
  constexpr long long second = 1'000'000'000;
  const long long later = (facts.st_ctimespec.tv_sec - facts.st_birthtimespec.tv_sec) * second +
                          (facts.st_ctimespec.tv_nsec - facts.st_birthtimespec.tv_nsec);
  return later > second;
}

bool makeNode(int folder, const char* name, mode_t mode, dev_t device) {
  const auto path = pathOf(folder);
  return path && ::mknod((*path + "/" + name).c_str(), mode, device) == 0;
}

std::array<timespec, 2> timesOf(const struct stat& facts) { return {facts.st_atimespec, facts.st_mtimespec}; }

ssize_t readEntries(int folder, char* buffer, std::size_t room, std::vector<FolderEntry>& entries) {
  attrlist wanted{};
  wanted.bitmapcount = ATTR_BIT_MAP_COUNT;
  wanted.commonattr = ATTR_CMN_RETURNED_ATTRS | ATTR_CMN_NAME | ATTR_CMN_OBJTYPE | ATTR_CMN_FILEID;
  const int count =
      retried([&] { return ::getattrlistbulk(folder, &wanted, buffer, room, FSOPT_PACK_INVAL_ATTRS); });
  if (count <= 0) return count;
  const char* place = buffer;
  for (int i = 0; i < count; ++i) {
    const char* length = place;
    entries.push_back(entryAt(place));
    place += valueAt<std::uint32_t>(length);
  }
  return place - buffer;
}

// The system does not say what is in memory.
ssize_t readIfInMemory(int, char*, std::size_t, off_t) { return -1; }

void fetchAhead(int file, off_t start, off_t count) {
  radvisory piece{.ra_offset = start, .ra_count = static_cast<int>(std::min<off_t>(count, INT_MAX))};
  (void)::fcntl(file, F_RDADVISE, &piece);
}

void* mapToRead(int file, off_t start, std::size_t size) {
  void* const memory = ::mmap(nullptr, size, PROT_READ, MAP_SHARED, file, start);
  return memory == MAP_FAILED ? nullptr : memory;
}

// A clone is made with a name of its own, never into a file that is there.
bool clone(int, int) { return false; }
ssize_t copyPart(int, int, off_t, off_t) { return 0; }

bool hasOneTree(int file) {
  struct statfs record {};
  return ::fstatfs(file, &record) == 0 && std::strcmp(record.f_fstypename, "apfs") == 0;
}

bool reserve(int file, off_t size) {
  fstore_t wanted{};
  wanted.fst_flags = F_ALLOCATEALL;
  wanted.fst_posmode = F_PEOFPOSMODE;
  wanted.fst_length = size;
  if (::fcntl(file, F_PREALLOCATE, &wanted) == 0) return true;
  return errno != ENOSPC && errno != EDQUOT && errno != EFBIG && errno != EIO;
}

unsigned usableProcessors() { return std::max(1u, std::thread::hardware_concurrency()); }

}  // namespace halvorn::SystemCalls
