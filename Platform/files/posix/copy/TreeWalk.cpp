#include "Platform/files/posix/copy/TreeWalk.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <memory>
#include <utility>
#include <vector>

#include "Platform/files/posix/copy/SystemCalls.h"
#include "Platform/running/posix/FileDescriptor.h"

namespace halvorn {
namespace {

constexpr int kOpenToList = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;

using Operation = Cause::Operation;

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

  std::optional<WalkFailure> run(const std::string& name) {
    struct stat facts {};
    if (::fstatat(top_, name.c_str(), &facts, AT_SYMLINK_NOFOLLOW) != 0) {
      note(Cause::ofSystem(Operation::Look), name);
    } else if (!S_ISDIR(facts.st_mode)) {
      note(visitor_.visitItem(top_, name), name);
    } else {
      device_ = facts.st_dev;
      walk(name);
    }
    return failure_;
  }

 private:
  void walk(const std::string& name) {
    enter(top_, name);
    while (!levels_.empty()) {
      auto& left = levels_.back().foldersLeft;
      if (!left.empty()) {
        const std::string next = std::move(left.back());
        left.pop_back();
        enter(current_.get(), next);
      } else if (!leave()) {
        return;
      }
    }
  }

  void enter(int folder, const std::string& name) {
    FileDescriptor opened(retried([&] { return ::openat(folder, name.c_str(), kOpenToList); }));
    struct stat facts {};
    if (!opened && errno == EACCES) {
      // A folder that may not be read may still be empty, and then be visited.
      return note(visitor_.visitFolder(folder, name), name);
    }
    if (!opened) return note(Cause::ofSystem(Operation::Open), name);
    if (::fstat(opened.get(), &facts) != 0) return note(Cause::ofSystem(Operation::Look), name);
    if (facts.st_dev != device_)
      return note(Cause::ofOurs(Operation::Open, "another file system is mounted there"), name);
    if (!levels_.empty() && !SystemCalls::isSameMount(folder, opened.get()))
      return note(Cause::ofOurs(Operation::Open, "something else is mounted there"), name);
    if (const Cause cause = visitor_.refuse ? visitor_.refuse(opened.get()) : Cause())
      return note(cause, name);
    levels_.push_back({.name = name, .device = facts.st_dev, .number = facts.st_ino});
    current_ = std::move(opened);
    visitItems();
  }

  // Visits what is no folder and notes the folders.
  void visitItems() {
    const int folder = current_.get();
    std::vector<std::string>& folders = levels_.back().foldersLeft;
    FileDescriptor again(retried([&] { return ::openat(folder, ".", kOpenToList); }));
    const std::unique_ptr<DIR, int (*)(DIR*)> stream(again ? ::fdopendir(again.get()) : nullptr, ::closedir);
    if (stream == nullptr) return noteHere(Cause::ofSystem(Operation::List));
    (void)again.release();
    errno = 0;
    while (const dirent* entry = ::readdir(stream.get())) {
      const std::string name = entry->d_name;
      if (name != "." && name != "..") {
        if (isFolder(folder, *entry)) {
          folders.push_back(name);
        } else {
          note(visitor_.visitItem(folder, name), name);
        }
      }
      errno = 0;
    }
    if (errno != 0) noteHere(Cause::ofSystem(Operation::List));
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
      note(visitor_.visitFolder(top_, name), name);
      return true;
    }
    const Cause cause = goUp();
    if (cause) {
      noteHere(cause);
      return false;
    }
    note(visitor_.visitFolder(current_.get(), name), name);
    return true;
  }

  Cause goUp() {
    FileDescriptor above(retried([&] { return ::openat(current_.get(), "..", kOpenToList); }));
    struct stat facts {};
    if (!above || ::fstat(above.get(), &facts) != 0) return Cause::ofSystem(Operation::Open);
    if (facts.st_dev != levels_.back().device || facts.st_ino != levels_.back().number)
      return Cause::ofOurs(Operation::Open, "it was moved or replaced meanwhile");
    current_ = std::move(above);
    return {};
  }

  // Something went wrong, perhaps, with what has that name in the folder where the walk is.
  void note(const Cause& cause, const std::string& name) {
    if (!cause || failure_) return;
    noteHere(cause);
    if (!levels_.empty()) failure_->path += "/" + name;
  }
  // And with that folder itself.
  void noteHere(const Cause& cause) {
    if (failure_) return;
    failure_ = WalkFailure{.cause = cause, .path = {}};
    for (std::size_t i = 1; i < levels_.size(); ++i) failure_->path += "/" + levels_[i].name;
  }

  int top_;
  const TreeVisitor& visitor_;
  dev_t device_ = 0;
  FileDescriptor current_;
  std::vector<Level> levels_;
  std::optional<WalkFailure> failure_;
};

}  // namespace

std::optional<WalkFailure> walkTree(int folder, const std::string& name, const TreeVisitor& visitor) {
  return TreeWalk(folder, visitor).run(name);
}

}  // namespace halvorn
