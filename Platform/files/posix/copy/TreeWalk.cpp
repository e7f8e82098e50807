#include "Platform/files/posix/copy/TreeWalk.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <memory>
#include <utility>
#include <vector>

#include "Platform/running/posix/FileDescriptor.h"

namespace halvorn {
namespace {

constexpr int openToList = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;

// One folder on the way from the item down to where the walk is.
struct Level {
  std::string name;  // in the folder above
  dev_t device = 0;
  ino_t number = 0;
  std::vector<std::string> foldersLeft = {};
};

class TreeWalk {
 public:
  TreeWalk(int top, const TreeVisitor& visitor) : top_(top), visitor_(visitor) {}

  bool run(const std::string& name) {
    struct stat facts {};
    if (::fstatat(top_, name.c_str(), &facts, AT_SYMLINK_NOFOLLOW) != 0) return false;
    if (!S_ISDIR(facts.st_mode)) return visitor_.visitItem(top_, name);
    device_ = facts.st_dev;
    if (!enter(top_, name)) return false;
    while (!levels_.empty()) {
      auto& left = levels_.back().foldersLeft;
      if (left.empty()) {
        if (!leave()) return false;
        continue;
      }
      const std::string next = std::move(left.back());
      left.pop_back();
      if (!enter(current_.get(), next)) allDone_ = false;
    }
    return allDone_;
  }

 private:
  bool enter(int folder, const std::string& name) {
    FileDescriptor opened(retried([&] { return ::openat(folder, name.c_str(), openToList); }));
    struct stat facts {};
    // A folder that may not be read may still be empty, and then be visited.
    if (!opened) return errno == EACCES && visitor_.visitFolder(folder, name);
    if (::fstat(opened.get(), &facts) != 0 || facts.st_dev != device_) return false;
    Level level{.name = name, .device = facts.st_dev, .number = facts.st_ino};
    if (!visitItems(opened.get(), level.foldersLeft)) allDone_ = false;
    levels_.push_back(std::move(level));
    current_ = std::move(opened);
    return true;
  }

  // Visits what is no folder and notes the folders.
  bool visitItems(int folder, std::vector<std::string>& folders) {
    FileDescriptor again(retried([&] { return ::openat(folder, ".", openToList); }));
    const std::unique_ptr<DIR, int (*)(DIR*)> stream(again ? ::fdopendir(again.get()) : nullptr, ::closedir);
    if (stream == nullptr) return false;
    (void)again.release();
    bool all = true;
    errno = 0;
    while (const dirent* entry = ::readdir(stream.get())) {
      const std::string name = entry->d_name;
      if (name != "." && name != "..") {
        if (isFolder(folder, *entry)) {
          folders.push_back(name);
        } else if (!visitor_.visitItem(folder, name)) {
          all = false;
        }
      }
      errno = 0;
    }
    return all && errno == 0;
  }

  static bool isFolder(int folder, const dirent& entry) {
    if (entry.d_type != DT_UNKNOWN) return entry.d_type == DT_DIR;
    struct stat facts {};
    return ::fstatat(folder, entry.d_name, &facts, AT_SYMLINK_NOFOLLOW) == 0 && S_ISDIR(facts.st_mode);
  }

  // Goes up one folder and visits the one it came from. False when the way up is lost.
  bool leave() {
    const std::string name = std::move(levels_.back().name);
    levels_.pop_back();
    if (levels_.empty()) {
      current_.reset();
      if (!visitor_.visitFolder(top_, name)) allDone_ = false;
      return true;
    }
    FileDescriptor above(retried([&] { return ::openat(current_.get(), "..", openToList); }));
    struct stat facts {};
    if (!above || ::fstat(above.get(), &facts) != 0) return false;
    if (facts.st_dev != levels_.back().device || facts.st_ino != levels_.back().number) return false;
    current_ = std::move(above);
    if (!visitor_.visitFolder(current_.get(), name)) allDone_ = false;
    return true;
  }

  int top_;
  const TreeVisitor& visitor_;
  dev_t device_ = 0;
  FileDescriptor current_;
  std::vector<Level> levels_;
  bool allDone_ = true;
};

}  // namespace

bool walkTree(int folder, const std::string& name, const TreeVisitor& visitor) {
  return TreeWalk(folder, visitor).run(name);
}

}  // namespace halvorn
