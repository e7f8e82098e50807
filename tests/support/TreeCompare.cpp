#include "tests/support/TreeCompare.h"

#include <dirent.h>
#include <fcntl.h>
#include <pthread.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <algorithm>
#include <functional>
#include <map>
#include <memory>
#include <set>

namespace halvorn {
namespace {

// Deliberately plain: one thread, one file at a time, and none of the code that makes copies.
class Comparer {
 public:
  void compare(int original, int copy, const std::string& name, const std::string& shown) {
    struct stat a {};
    struct stat b {};
    if (::fstatat(original, name.c_str(), &a, AT_SYMLINK_NOFOLLOW) != 0)
      return note(shown, "original is gone");
    if (::fstatat(copy, name.c_str(), &b, AT_SYMLINK_NOFOLLOW) != 0) return note(shown, "missing");
    compareFacts(a, b, shown);
    if ((a.st_mode & S_IFMT) != (b.st_mode & S_IFMT)) return;
    if (!S_ISDIR(a.st_mode)) compareNames(a, b, shown);
    if (attributes(original, name) != attributes(copy, name)) note(shown, "attributes");
    if (S_ISLNK(a.st_mode) && linkTarget(original, name) != linkTarget(copy, name))
      note(shown, "link target");
    if (S_ISREG(a.st_mode)) compareBytes(original, copy, name, a, b, shown);
    if (S_ISDIR(a.st_mode)) compareFolders(original, copy, name, shown);
  }

  std::vector<std::string> differences;

 private:
  void note(const std::string& shown, const std::string& what) { differences.push_back(shown + ": " + what); }

  void compareFacts(const struct stat& a, const struct stat& b, const std::string& shown) {
    if (a.st_mode != b.st_mode) note(shown, "mode");
    if (a.st_uid != b.st_uid || a.st_gid != b.st_gid) note(shown, "owner");
    if (a.st_mtim.tv_sec != b.st_mtim.tv_sec || a.st_mtim.tv_nsec != b.st_mtim.tv_nsec) note(shown, "time");
    const bool isDevice = S_ISCHR(a.st_mode) || S_ISBLK(a.st_mode);
    if (isDevice && a.st_rdev != b.st_rdev) note(shown, "device number");
    if (!S_ISDIR(a.st_mode) && a.st_size != b.st_size) note(shown, "size");
  }

  // Names of one file in the original are names of one file in the copy, and the other way round.
  void compareNames(const struct stat& a, const struct stat& b, const std::string& shown) {
    const auto [there, isNew] = pairs_.try_emplace({a.st_dev, a.st_ino}, std::pair(b.st_dev, b.st_ino));
    const bool isSame = there->second == std::pair(b.st_dev, b.st_ino);
    if (!isSame) note(shown, "not one file with its other name");
    if (isNew && !copies_.emplace(b.st_dev, b.st_ino).second) note(shown, "one file with a stranger");
  }

  static std::map<std::string, std::string> attributes(int folder, const std::string& name) {
    const std::string path = "/proc/self/fd/" + std::to_string(folder) + "/" + name;
    std::vector<char> names(66'000);
    const ssize_t size = ::llistxattr(path.c_str(), names.data(), names.size());
    std::map<std::string, std::string> result;
    for (ssize_t at = 0; at < size;) {
      const std::string attribute = names.data() + at;
      at += static_cast<ssize_t>(attribute.size()) + 1;
      if (attribute == "security.selinux" || attribute.starts_with("trusted.SGI_ACL_")) continue;
      std::vector<char> value(66'000);
      const ssize_t length = ::lgetxattr(path.c_str(), attribute.c_str(), value.data(), value.size());
      result[attribute] =
          length < 0 ? "(unreadable)" : std::string(value.data(), static_cast<std::size_t>(length));
    }
    return result;
  }

  static std::string linkTarget(int folder, const std::string& name) {
    std::string target(8'192, '\0');
    const ssize_t size = ::readlinkat(folder, name.c_str(), target.data(), target.size());
    target.resize(static_cast<std::size_t>(std::max<ssize_t>(size, 0)));
    return target;
  }

  void compareBytes(int original, int copy, const std::string& name, const struct stat& a,
                    const struct stat& b, const std::string& shown) {
    const int first = ::openat(original, name.c_str(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC);
    const int second = ::openat(copy, name.c_str(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC);
    std::vector<char> one(1 << 20);
    std::vector<char> two(1 << 20);
    off_t at = 0;
    while (first >= 0 && second >= 0 && at < a.st_size) {
      // Holes are skipped where both have one.
      const off_t data = std::min(::lseek(first, at, SEEK_DATA), ::lseek(second, at, SEEK_DATA));
      if (data > at) at = data;
      const ssize_t count = ::pread(first, one.data(), one.size(), at);
      if (count != ::pread(second, two.data(), two.size(), at) || count < 0) break;
      if (count == 0 || !std::equal(one.begin(), one.begin() + count, two.begin())) break;
      at += count;
    }
    if (at < a.st_size && !(isHoleToEnd(first, at) && isHoleToEnd(second, at))) note(shown, "bytes");
    // A hole of a megabyte is one; how a file system rounds small ones is its own affair.
    if (a.st_size - a.st_blocks * 512 > (1 << 20) && b.st_blocks * 512 > a.st_blocks * 512 + (1 << 20)) {
      note(shown, "holes filled");
    }
    if (first >= 0) ::close(first);
    if (second >= 0) ::close(second);
  }

  static bool isHoleToEnd(int file, off_t at) { return file >= 0 && ::lseek(file, at, SEEK_DATA) < 0; }

  static std::set<std::string> list(int folder) {
    std::set<std::string> names;
    const std::unique_ptr<DIR, int (*)(DIR*)> stream(::fdopendir(::dup(folder)), ::closedir);
    while (const dirent* entry = stream ? ::readdir(stream.get()) : nullptr) names.insert(entry->d_name);
    names.erase(".");
    names.erase("..");
    return names;
  }

  void compareFolders(int original, int copy, const std::string& name, const std::string& shown) {
    const int first = ::openat(original, name.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    const int second = ::openat(copy, name.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    if (first < 0 || second < 0) {
      note(shown, "cannot be opened");
    } else {
      const auto names = list(first);
      if (names != list(second)) note(shown, "entries");
      // A path of 2,000 levels is of no use to anybody.
      const std::string below = shown.size() < 300 ? shown + "/" : shown;
      for (const std::string& inner : names)
        compare(first, second, inner, below + (shown.size() < 300 ? inner : ""));
    }
    if (first >= 0) ::close(first);
    if (second >= 0) ::close(second);
  }

  using Identity = std::pair<dev_t, ino_t>;
  std::map<Identity, Identity> pairs_;
  std::set<Identity> copies_;
};

// Thousands of folders in one another are thousands of calls in one another, and the
// sanitizers make each of them large.
void onLargeStack(std::function<void()> task) {
  pthread_attr_t attributes;
  pthread_attr_init(&attributes);
  pthread_attr_setstacksize(&attributes, std::size_t{512} << 20);
  const auto run = [](void* context) -> void* {
    (*static_cast<std::function<void()>*>(context))();
    return nullptr;
  };
  pthread_t thread = {};
  if (pthread_create(&thread, &attributes, run, &task) == 0) pthread_join(thread, nullptr);
  pthread_attr_destroy(&attributes);
}

}  // namespace

std::vector<std::string> differencesBetween(const std::string& original, const std::string& copy) {
  Comparer comparer;
  const int first = ::open(original.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  const int second = ::open(copy.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (first < 0 || second < 0) return {"cannot be opened"};
  onLargeStack([&] { comparer.compare(first, second, ".", ""); });
  ::close(first);
  ::close(second);
  return comparer.differences;
}

}  // namespace halvorn
