#include "tests/support/OddTree.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <stdexcept>
#include <vector>

namespace halvorn::SampleTrees {
namespace {

// What cannot be made here is left out; that is what this tree promises.
void ignore(int) {}

void addFile(const std::string& path, const std::string& contents, mode_t mode = 0644) {
  const int file = ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
  if (file < 0) return;
  if (::write(file, contents.data(), contents.size()) < 0) throw std::runtime_error("write " + path);
  ignore(::fchmod(file, mode));
  ::close(file);
}

void addSparse(const std::string& path, off_t size, const std::vector<off_t>& written) {
  const int file = ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644);
  if (file < 0) return;
  for (const off_t offset : written) ignore(static_cast<int>(::pwrite(file, "data", 4, offset)));
  ignore(::ftruncate(file, size));
  ::close(file);
}

void setAttribute(const std::string& path, const char* name, const std::string& value) {
  ignore(::lsetxattr(path.c_str(), name, value.data(), value.size(), 0));
}

void setTimes(const std::string& path, timespec change) {
  const timespec times[] = {{.tv_sec = 1'000'000'000, .tv_nsec = 1}, change};
  ignore(::utimensat(AT_FDCWD, path.c_str(), times, AT_SYMLINK_NOFOLLOW));
}

void addModes(const std::string& path) {
  ignore(::mkdir(path.c_str(), 0755));
  for (const mode_t mode : {0u, 0444u, 0600u, 0777u, 01644u, 02755u, 04755u, 06711u, 07777u}) {
    addFile(path + "/file" + std::to_string(mode), "mode", mode);
    const std::string folder = path + "/folder" + std::to_string(mode);
    ignore(::mkdir(folder.c_str(), 0755));
    addFile(folder + "/inside", "inside");
    ignore(::chmod(folder.c_str(), mode));
  }
  addFile(path + "/owned", "owned");
  ignore(::chown((path + "/owned").c_str(), 1234, 2345));
}

void addAttributes(const std::string& path) {
  ignore(::mkdir(path.c_str(), 0755));
  addFile(path + "/big", "attributes");
  setAttribute(path + "/big", "user.big", std::string(65'536, 'b'));
  setAttribute(path + "/big", "user.small", "small");
  addFile(path + "/capable", "capability", 0755);
  setAttribute(path + "/capable", "security.capability",
               std::string("\1\0\0\2\0\4\0\0\0\0\0\0\0\0\0\0\0\0\0\0", 20));
  addFile(path + "/listed", "access list", 0640);
  // version 2: owner rw, user 12345 r, group r, mask r, others nothing
  const std::string list(
      "\2\0\0\0\1\0\6\0\xFF\xFF\xFF\xFF\2\0\4\0\x39\x30\0\0\4\0\4\0\xFF\xFF\xFF\xFF"
      "\x10\0\4\0\xFF\xFF\xFF\xFF\x20\0\0\0\xFF\xFF\xFF\xFF",
      44);
  setAttribute(path + "/listed", "system.posix_acl_access", list);
  setAttribute(path, "system.posix_acl_default", list);
  ignore(::mkdir((path + "/inherits").c_str(), 0755));
  addFile(path + "/inherits/too", "inherited");
}

void addNames(const std::string& path) {
  ignore(::mkdir(path.c_str(), 0755));
  addFile(path + "/" + std::string(255, 'n'), "long");
  for (int byte = 1; byte < 256; ++byte) {
    if (byte != '/') addFile(path + "/b" + static_cast<char>(byte), std::to_string(byte));
  }
}

void addLinks(const std::string& path) {
  ignore(::mkdir(path.c_str(), 0755));
  ignore(::mkdir((path + "/other").c_str(), 0755));
  addFile(path + "/file", "linked");
  ignore(::link((path + "/file").c_str(), (path + "/other/hard").c_str()));
  for (const std::string target : {"file", "nowhere", "../..", "/etc/passwd", "self"}) {
    ignore(::symlink(target.c_str(), (path + "/" + std::to_string(target.size()) + "link").c_str()));
  }
  ignore(::symlink("self", (path + "/self").c_str()));
  ignore(::symlink(std::string(4'095, 'l').c_str(), (path + "/longest").c_str()));
  ignore(::symlink(std::string(1'000, 'l').c_str(), (path + "/long").c_str()));
  setTimes(path + "/self", {.tv_sec = 1'234'567'890, .tv_nsec = 123'456'789});
}

void addNodes(const std::string& path) {
  ignore(::mkdir(path.c_str(), 0755));
  ignore(::mkfifo((path + "/pipe").c_str(), 0640));
  ignore(::mknod((path + "/socket").c_str(), S_IFSOCK | 0600, 0));
  ignore(::mknod((path + "/null").c_str(), S_IFCHR | 0666, makedev(1, 3)));
  ignore(::mknod((path + "/loop").c_str(), S_IFBLK | 0600, makedev(7, 200)));
}

void addDepth(const std::string& path, int levels) {
  ignore(::mkdir(path.c_str(), 0755));
  int at = ::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  for (int level = 0; level < levels && at >= 0; ++level) {
    ignore(::mkdirat(at, "d", 0755));
    const int inner = ::openat(at, "d", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    ::close(at);
    at = inner;
  }
  if (at >= 0) ::close(at);
}

}  // namespace

void makeOdd(const std::string& path, long long bigBytes, int levels) {
  if (::mkdir(path.c_str(), 0755) != 0) throw std::runtime_error("mkdir " + path);
  addModes(path + "/modes");
  addAttributes(path + "/attributes");
  addNames(path + "/names");
  addLinks(path + "/links");
  addNodes(path + "/nodes");
  addDepth(path + "/depth", levels);
  addFile(path + "/empty", "");
  addFile(path + "/old", "before 1970");
  setTimes(path + "/old", {.tv_sec = -1'000'000, .tv_nsec = 987'654'321});
  addFile(path + "/precise", "nanoseconds");
  setTimes(path + "/precise", {.tv_sec = 1'234'567'890, .tv_nsec = 123'456'789});
  addSparse(path + "/hole-first", 1 << 20, {(1 << 20) - 4});
  addSparse(path + "/hole-last", 1 << 20, {0});
  addSparse(path + "/holes-between", 4 << 20, {0, 1 << 20, 3 << 20});
  addSparse(path + "/all-hole", 1 << 20, {});
  addSparse(path + "/big", bigBytes, {0, bigBytes / 2, bigBytes - 4});
  setTimes(path, {.tv_sec = 1'100'000'000, .tv_nsec = 42});
}

}  // namespace halvorn::SampleTrees
