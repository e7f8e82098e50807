#include "Platform/files/posix/copy/TreeOwnership.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <map>
#include <utility>

#include "Platform/files/posix/copy/SystemCalls.h"
#include "Platform/files/posix/copy/TreeWalk.h"

namespace halvorn {
namespace {

using LinkCounts = std::map<std::pair<dev_t, ino_t>, nlink_t>;

bool isSharedFile(const struct stat& facts) { return !S_ISDIR(facts.st_mode) && facts.st_nlink > 1; }

// Whether nobody but this process' user can put things into the folder.
bool isOursAlone(int folder) {
  struct stat facts {};
  return ::fstat(folder, &facts) == 0 && facts.st_uid == ::geteuid() &&
         (facts.st_mode & (S_IWGRP | S_IWOTH)) == 0;
}

// Whether everybody could see what is in there before.
bool isPublic(const struct stat& facts) {
  constexpr mode_t readAndSearch = S_IROTH | S_IXOTH;
  if (S_ISLNK(facts.st_mode)) return true;
  if (S_ISDIR(facts.st_mode)) return (facts.st_mode & readAndSearch) == readAndSearch;
  return (facts.st_mode & S_IROTH) != 0;
}

Cause causeOfKeeping() { return Cause::ofOurs(Cause::Operation::Metadata, "it keeps its owner"); }

// One tree on its way to a person.
class Gift {
 public:
  Gift(const Person& person, SystemCalls::ItemNumbers topsOfMounts)
      : person_(person), topsOfMounts_(std::move(topsOfMounts)) {}

  bool giveTree(int top) {
    countLinks(top);
    const auto visit = [&](int folder, const std::string& name) {
      // The top comes last and is the one that was pinned.
      const bool isGiven = name == "." ? giveItem(top) : giveIn(folder, name);
      return isGiven ? Cause() : causeOfKeeping();
    };
    return !walkTree(top, ".", {.visitItem = visit, .visitFolder = visit, .refuse = causeUnlessHereAlone()});
  }

  // `item` is open to name it, so that what is looked at is what is given.
  bool giveItem(int item) const {
    struct stat facts {};
    if (::fstat(item, &facts) != 0 || facts.st_uid != ::geteuid() || !isPublic(facts)) return false;
    if (topsOfMounts_.contains({facts.st_dev, facts.st_ino})) return false;
    if (isSharedFile(facts)) {
      const auto found = counts_.find({facts.st_dev, facts.st_ino});
      if (found == counts_.end() || found->second < facts.st_nlink) return false;
    }
    return SystemCalls::changeOwner(item, person_.user, person_.group);
  }

 private:
  // How often each file with several names stands in those folders of the tree that
  // nobody can change meanwhile, and that can be seen nowhere else.
  void countLinks(int top) {
    const auto count = [&](int folder, const std::string& name) {
      struct stat facts {};
      if (!isOursAlone(folder)) return Cause();
      if (::fstatat(folder, name.c_str(), &facts, AT_SYMLINK_NOFOLLOW) != 0)
        return Cause::ofSystem(Cause::Operation::Look);
      if (isSharedFile(facts)) ++counts_[{facts.st_dev, facts.st_ino}];
      return Cause();
    };
    (void)walkTree(top, ".",
                   {.visitItem = count,
                    .visitFolder = [](int, const std::string&) { return Cause(); },
                    .refuse = causeUnlessHereAlone()});
  }

  [[nodiscard]] std::function<Cause(int)> causeUnlessHereAlone() const {
    return [this](int folder) {
      struct stat facts {};
      if (::fstat(folder, &facts) != 0) return Cause::ofSystem(Cause::Operation::Look);
      return topsOfMounts_.contains({facts.st_dev, facts.st_ino}) ? causeOfKeeping() : Cause();
    };
  }

  [[nodiscard]] bool giveIn(int folder, const std::string& name) const {
    const FileDescriptor pinned = SystemCalls::holdItem(folder, name.c_str());
    // A file may be mounted there that stands somewhere else.
    return pinned && isOursAlone(folder) && SystemCalls::isSameMount(folder, pinned.get()) &&
           giveItem(pinned.get());
  }

  const Person& person_;
  const SystemCalls::ItemNumbers topsOfMounts_;
  LinkCounts counts_;
};

}  // namespace

bool giveTree(int fromFolder, int item, const Person& person) {
  struct stat facts {};
  if (!isOursAlone(fromFolder) || ::fstat(item, &facts) != 0) return false;
  auto topsOfMounts = SystemCalls::topsOfMounts(item);
  if (!topsOfMounts) return false;
  Gift gift(person, std::move(*topsOfMounts));
  return S_ISDIR(facts.st_mode) ? gift.giveTree(item) : gift.giveItem(item);
}

}  // namespace halvorn
