#include "Platform/files/posix/copy/HardLinks.h"

#include <fcntl.h>
#include <limits.h>
#include <unistd.h>

#include <cerrno>
#include <optional>
#include <vector>

#include "Platform/files/posix/copy/SystemCalls.h"
#include "Platform/running/posix/FileDescriptor.h"

namespace halvorn {
namespace {

bool isNoMoreNames(int error) {
  return error == EMLINK || error == EPERM || error == ENOTSUP || error == EOPNOTSUPP || error == EXDEV;
}

// The names from the top down to the folder, the last first.
std::vector<const std::string*> namesUp(const FolderPath* path) {
  std::vector<const std::string*> names;
  for (; path != nullptr; path = path->above.get()) names.push_back(&path->name);
  return names;
}

// In one piece, or empty when the system would not take that.
std::string joined(const std::vector<const std::string*>& names) {
  std::size_t size = 0;
  for (const std::string* name : names) size += name->size() + 1;
  std::string path;
  if (size > PATH_MAX) return path;
  path.reserve(size);
  for (auto name = names.rbegin(); name != names.rend(); ++name) {
    if (!path.empty()) path.push_back('/');
    path.append(**name);
  }
  return path;
}

// No link is followed on the way: where others may write, one may stand there by now.
FileDescriptor openDown(int top, const std::vector<const std::string*>& names) {
  const int flags = SystemCalls::openPath | O_DIRECTORY | O_CLOEXEC;
  const std::string whole = joined(names);
  if (!whole.empty()) {
    const auto resolution = SystemCalls::Resolution::BeneathWithoutLinks;
    if (auto folder = SystemCalls::openResolving(top, whole, flags, resolution)) return std::move(*folder);
  }
  FileDescriptor folder(::fcntl(top, F_DUPFD_CLOEXEC, 0));
  for (auto name = names.rbegin(); name != names.rend() && folder; ++name) {
    folder =
        FileDescriptor(retried([&] { return ::openat(folder.get(), (*name)->c_str(), flags | O_NOFOLLOW); }));
  }
  return folder;
}

std::optional<HardLinks::Identity> identityOf(int folder, const char* name) {
  struct stat facts {};
  if (::fstatat(folder, name, &facts, AT_SYMLINK_NOFOLLOW) != 0) return std::nullopt;
  return std::pair(facts.st_dev, facts.st_ino);
}

}  // namespace

Cause HardLinks::link(const Copy& copy, int folder, const char* name,
                      const std::shared_ptr<const FolderPath>& path) const {
  constexpr auto operation = Cause::Operation::Link;
  FileDescriptor holder;
  if (copy.folder != path) {
    holder = openDown(top_, namesUp(copy.folder.get()));
    if (!holder) return Cause::ofSystem(operation);
  }
  if (::linkat(holder ? holder.get() : folder, copy.name.c_str(), folder, name, 0) != 0)
    return Cause::ofSystem(operation);
  errno = 0;
  if (identityOf(folder, name) == copy.identity) return {};
  const Cause cause =
      Cause::ofSystemOrOurs(operation, "something else stands where its first name was copied to");
  // Another folder has the name of the one that the copy was made in.
  ::unlinkat(folder, name, 0);
  return cause;
}

// Whoever waits for the copy is told how it ended, whatever happens.
class HardLinks::Making {
 public:
  Making(HardLinks& links, const Identity& original) : links_(links), original_(original) {}
  ~Making() {
    const std::lock_guard lock(links_.mutex_);
    if (!isDone_) links_.copies_.erase(original_);
    links_.changed_.notify_all();
  }
  Making(const Making&) = delete;
  Making& operator=(const Making&) = delete;
  void isDone(const Copy& copy) {
    const std::lock_guard lock(links_.mutex_);
    links_.copies_[original_] = copy;
    isDone_ = true;
  }

 private:
  HardLinks& links_;
  const Identity original_;
  bool isDone_ = false;
};

OrCause<HardLinks::Answer> HardLinks::makeOrLink(const struct stat& facts, int folder, const char* name,
                                                 const std::shared_ptr<const FolderPath>& path,
                                                 const Make& make) {
  const Identity original(facts.st_dev, facts.st_ino);
  Copy mine{.folder = path,
            .name = name,
            .namesLeft = static_cast<nlink_t>(facts.st_nlink - 1),
            .identity = std::nullopt};
  std::unique_lock lock(mutex_);
  auto [copy, isFirst] = copies_.try_emplace(original, mine);
  if (!isFirst) {
    // The second name never comes before the first is there.
    while (copy != copies_.end() && !copy->second.identity) {
      changed_.wait(lock);
      copy = copies_.find(original);
    }
    if (copy == copies_.end()) return Cause::toldByAnother();
    const Copy earlier = copy->second;
    if (--copy->second.namesLeft == 0) copies_.erase(copy);
    lock.unlock();
    const Cause cause = link(earlier, folder, name, path);
    if (!cause) return Answer::Linked;
    if (!isNoMoreNames(cause.error())) return cause;
    lock.lock();
    copies_[original] = mine;
  }
  lock.unlock();
  Making making(*this, original);
  const auto made = make();
  if (!made) return made.cause();
  mine.identity = *made;
  making.isDone(mine);
  return Answer::Made;
}

}  // namespace halvorn
