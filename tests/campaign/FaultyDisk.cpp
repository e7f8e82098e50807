// kt_faulty_disk FOLDER PLACE [fuse options]: shows the folder at the place as a disk of its own (FUSE), one that is slow,
// or fails from some change on. KT_DISK_FAILS_AFTER is how many changes it still makes, KT_DISK_ERROR with which error it
// refuses the others, KT_DISK_SLOW how many microseconds each call takes.
#define FUSE_USE_VERSION 31
#include <dirent.h>
#include <fcntl.h>
#include <fuse.h>
#include <sys/statvfs.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

std::string folder;
long failsAfter = -1;
int error = EIO;
useconds_t slow = 0;  // what each answer waits: a disk behind a network
std::atomic<long> changes{0};

std::string in(const char* path) { return folder + path; }

int answer(long result) { return result < 0 ? -errno : static_cast<int>(result); }

int look(long result) {
  const int answered = answer(result);
  if (slow != 0) ::usleep(slow);
  return answered;
}

// A change is made, or refused where the disk is broken by now.
template <typename Work>
int change(const Work& work) {
  if (slow != 0) ::usleep(slow);
  if (failsAfter >= 0 && changes++ >= failsAfter) return -error;
  return answer(work());
}

// What is made belongs to whoever makes it.
template <typename Work>
int make(const char* path, const Work& work) {
  const fuse_context* maker = fuse_get_context();
  return change([&] {
    const auto made = work();
    return made < 0 || ::lchown(in(path).c_str(), maker->uid, maker->gid) == 0 ? made : -1;
  });
}

int getAttributes(const char* path, struct stat* facts, fuse_file_info*) {
  return look(::lstat(in(path).c_str(), facts));
}
int readLink(const char* path, char* target, std::size_t size) {
  const ssize_t length = ::readlink(in(path).c_str(), target, size - 1);
  if (length >= 0) target[length] = '\0';
  return look(length < 0 ? -1 : 0);
}
int makeNode(const char* path, mode_t mode, dev_t device) {
  return make(path, [&] { return ::mknod(in(path).c_str(), mode, device); });
}
int makeFolder(const char* path, mode_t mode) {
  return make(path, [&] { return ::mkdir(in(path).c_str(), mode); });
}
int makeLink(const char* target, const char* path) {
  return make(path, [&] { return ::symlink(target, in(path).c_str()); });
}
int removeFile(const char* path) {
  return change([&] { return ::unlink(in(path).c_str()); });
}
int removeFolder(const char* path) {
  return change([&] { return ::rmdir(in(path).c_str()); });
}
int move(const char* from, const char* to, unsigned flags) {
  return change([&] { return ::renameat2(AT_FDCWD, in(from).c_str(), AT_FDCWD, in(to).c_str(), flags); });
}
int makeName(const char* from, const char* to) {
  return change([&] { return ::link(in(from).c_str(), in(to).c_str()); });
}
int setMode(const char* path, mode_t mode, fuse_file_info*) {
  return change([&] { return ::chmod(in(path).c_str(), mode); });
}
int setOwner(const char* path, uid_t owner, gid_t group, fuse_file_info*) {
  return change([&] { return ::lchown(in(path).c_str(), owner, group); });
}
int setSize(const char* path, off_t size, fuse_file_info*) {
  return change([&] { return ::truncate(in(path).c_str(), size); });
}
int setTimes(const char* path, const timespec times[2], fuse_file_info*) {
  return change([&] { return ::utimensat(AT_FDCWD, in(path).c_str(), times, AT_SYMLINK_NOFOLLOW); });
}
int keep(int descriptor, fuse_file_info* file) {
  if (descriptor >= 0) file->fh = static_cast<std::uint64_t>(descriptor);
  return descriptor < 0 ? descriptor : 0;
}
int openFile(const char* path, fuse_file_info* file) {
  return keep(look(::open(in(path).c_str(), file->flags)), file);
}
int makeFile(const char* path, mode_t mode, fuse_file_info* file) {
  return keep(make(path, [&] { return ::open(in(path).c_str(), file->flags, mode); }), file);
}
int readFile(const char*, char* bytes, std::size_t size, off_t at, fuse_file_info* file) {
  return look(::pread(static_cast<int>(file->fh), bytes, size, at));
}
int writeFile(const char*, const char* bytes, std::size_t size, off_t at, fuse_file_info* file) {
  return change([&] { return ::pwrite(static_cast<int>(file->fh), bytes, size, at); });
}
int closeFile(const char*, fuse_file_info* file) { return answer(::close(static_cast<int>(file->fh))); }
int room(const char* path, struct statvfs* facts) { return look(::statvfs(in(path).c_str(), facts)); }
int listFolder(const char* path, void* list, fuse_fill_dir_t add, off_t, fuse_file_info*,
               fuse_readdir_flags) {
  DIR* entries = ::opendir(in(path).c_str());
  if (entries == nullptr) return -errno;
  while (const dirent* entry = ::readdir(entries))
    add(list, entry->d_name, nullptr, 0, static_cast<fuse_fill_dir_flags>(0));
  ::closedir(entries);
  return look(0);
}
int getAttribute(const char* path, const char* name, char* value, std::size_t size) {
  return look(::lgetxattr(in(path).c_str(), name, value, size));
}
int listAttributes(const char* path, char* list, std::size_t size) {
  return look(::llistxattr(in(path).c_str(), list, size));
}
int setAttribute(const char* path, const char* name, const char* value, std::size_t size, int flags) {
  return change([&] { return ::lsetxattr(in(path).c_str(), name, value, size, flags); });
}
int removeAttribute(const char* path, const char* name) {
  return change([&] { return ::lremovexattr(in(path).c_str(), name); });
}

fuse_operations operations() {
  fuse_operations all{};
  all.getattr = getAttributes, all.readlink = readLink, all.readdir = listFolder, all.statfs = room;
  all.mknod = makeNode, all.mkdir = makeFolder, all.symlink = makeLink, all.link = makeName;
  all.unlink = removeFile, all.rmdir = removeFolder, all.rename = move;
  all.chmod = setMode, all.chown = setOwner, all.truncate = setSize, all.utimens = setTimes;
  all.open = openFile, all.create = makeFile, all.read = readFile, all.write = writeFile,
  all.release = closeFile;
  all.getxattr = getAttribute, all.listxattr = listAttributes, all.setxattr = setAttribute,
  all.removexattr = removeAttribute;
  return all;
}

long numberIn(const char* variable, long otherwise) {
  const char* value = std::getenv(variable);
  return value == nullptr ? otherwise : std::atol(value);
}

}  // namespace

int main(int count, char** words) {
  if (count < 3) {
    std::fputs("usage: kt_faulty_disk FOLDER PLACE [options of FUSE]\n", stderr);
    return 64;
  }
  folder = words[1];
  failsAfter = numberIn("KT_DISK_FAILS_AFTER", -1);
  error = static_cast<int>(numberIn("KT_DISK_ERROR", EIO));
  slow = static_cast<useconds_t>(numberIn("KT_DISK_SLOW", 0));
  ::umask(0);
  words[1] = words[0];
  const fuse_operations all = operations();
  return fuse_main(count - 1, words + 1, &all, nullptr);
}
