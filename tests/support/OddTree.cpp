#include "tests/support/OddTree.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <stdexcept>

namespace halvorn::SampleTrees {
namespace {

class OddTree {
 public:
  void make(const std::string& path, long long bigBytes, int levels);
  [[nodiscard]] const std::vector<std::string>& missing() const { return missing_; }

 private:
  void tried(long long result, const std::string& what) {
    if (result < 0) missing_.push_back(what + ": " + std::strerror(errno));
  }
  void addFolder(const std::string& path) { tried(::mkdir(path.c_str(), 0755), path); }
  void addLink(const std::string& target, const std::string& path) {
    tried(::symlink(target.c_str(), path.c_str()), path);
  }
  void addFile(const std::string& path, const std::string& contents, mode_t mode = 0644);
  void addSparse(const std::string& path, off_t size, const std::vector<off_t>& written);
  void setAttribute(const std::string& path, const std::string& name, const std::string& value);
  void setTimes(const std::string& path, timespec change);
  void addModes(const std::string& path);
  void addAttributes(const std::string& path);
  void addNames(const std::string& path);
  void addLinks(const std::string& path);
  void addNodes(const std::string& path);
  void addDepth(const std::string& path, int levels);

  std::vector<std::string> missing_;
};

void OddTree::addFile(const std::string& path, const std::string& contents, mode_t mode) {
  const int file = ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
  if (file < 0) return tried(file, path);
  if (::write(file, contents.data(), contents.size()) < 0) throw std::runtime_error("write " + path);
  tried(::fchmod(file, mode), path);
  ::close(file);
}

void OddTree::addSparse(const std::string& path, off_t size, const std::vector<off_t>& written) {
  const int file = ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644);
  if (file < 0) return tried(file, path);
  for (const off_t offset : written) tried(::pwrite(file, "data", 4, offset), path);
  tried(::ftruncate(file, size), path);
  ::close(file);
}

void OddTree::setAttribute(const std::string& path, const std::string& name, const std::string& value) {
  tried(::lsetxattr(path.c_str(), name.c_str(), value.data(), value.size(), 0), path + " " + name);
}

void OddTree::setTimes(const std::string& path, timespec change) {
  const timespec times[] = {{.tv_sec = 1'000'000'000, .tv_nsec = 1}, change};
  tried(::utimensat(AT_FDCWD, path.c_str(), times, AT_SYMLINK_NOFOLLOW), path + " times");
}

void OddTree::addModes(const std::string& path) {
  addFolder(path);
  for (const mode_t mode : {0u, 0444u, 0600u, 0777u, 01644u, 02755u, 04755u, 06711u, 07777u}) {
    addFile(path + "/file" + std::to_string(mode), "mode", mode);
    const std::string folder = path + "/folder" + std::to_string(mode);
    addFolder(folder);
    addFile(folder + "/inside", "inside");
    tried(::chmod(folder.c_str(), mode), folder + " mode");
  }
  addFile(path + "/owned", "owned");
  tried(::chown((path + "/owned").c_str(), 1234, 2345), path + "/owned owner");
}

void OddTree::addAttributes(const std::string& path) {
  addFolder(path);
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
  addFolder(path + "/inherits");
  addFile(path + "/inherits/too", "inherited");
}

void OddTree::addNames(const std::string& path) {
  addFolder(path);
  addFile(path + "/" + std::string(255, 'n'), "long");
  for (int byte = 1; byte < 256; ++byte) {
    if (byte != '/') addFile(path + "/b" + static_cast<char>(byte), std::to_string(byte));
  }
}

void OddTree::addLinks(const std::string& path) {
  addFolder(path);
  addFolder(path + "/other");
  addFile(path + "/file", "linked");
  tried(::link((path + "/file").c_str(), (path + "/other/hard").c_str()), path + "/other/hard");
  for (const std::string target : {"file", "nowhere", "../..", "/etc/passwd", "one"}) {
    addLink(target, path + "/" + std::to_string(target.size()) + "link");
  }
  addLink("self", path + "/self");
  addLink("other", path + "/one");
  addLink("one", path + "/other/back");
  addLink(std::string(4'095, 'l'), path + "/longest");
  addLink(std::string(1'000, 'l'), path + "/long");
  setTimes(path + "/self", {.tv_sec = 1'234'567'890, .tv_nsec = 123'456'789});
}

void OddTree::addNodes(const std::string& path) {
  addFolder(path);
  tried(::mkfifo((path + "/pipe").c_str(), 0640), path + "/pipe");
  tried(::mknod((path + "/socket").c_str(), S_IFSOCK | 0600, 0), path + "/socket");
  tried(::mknod((path + "/null").c_str(), S_IFCHR | 0666, makedev(1, 3)), path + "/null");
  tried(::mknod((path + "/loop").c_str(), S_IFBLK | 0600, makedev(7, 200)), path + "/loop");
}

void OddTree::addDepth(const std::string& path, int levels) {
  addFolder(path);
  int at = ::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  for (int level = 0; level < levels && at >= 0; ++level) {
    tried(::mkdirat(at, "d", 0755), path);
    const int inner = ::openat(at, "d", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    ::close(at);
    at = inner;
  }
  if (at >= 0) ::close(at);
}

void OddTree::make(const std::string& path, long long bigBytes, int levels) {
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

}  // namespace

std::vector<std::string> makeOdd(const std::string& path, long long bigBytes, int levels) {
  OddTree tree;
  tree.make(path, bigBytes, levels);
  return tree.missing();
}

}  // namespace halvorn::SampleTrees
