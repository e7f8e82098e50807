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

// How often each file with several names stands in those folders of the tree
// that nobody can change meanwhile.
LinkCounts countLinks(int tree) {
  LinkCounts counts;
  const auto count = [&](int folder, const std::string& name) {
    struct stat facts {};
    if (!isOursAlone(folder)) return Cause();
    if (::fstatat(folder, name.c_str(), &facts, AT_SYMLINK_NOFOLLOW) != 0)
      return Cause::ofSystem(Cause::Operation::Look);
    if (isSharedFile(facts)) ++counts[{facts.st_dev, facts.st_ino}];
    return Cause();
  };
  (void)walkTree(tree, ".",
                 {.visitItem = count, .visitFolder = [](int, const std::string&) { return Cause(); }});
  return counts;
}

// `item` is open to name it, so that what is looked at is what is given.
bool giveItem(int item, const Person& person, const LinkCounts& counts) {
  struct stat facts {};
  if (::fstat(item, &facts) != 0 || facts.st_uid != ::geteuid() || !isPublic(facts)) return false;
  if (isSharedFile(facts)) {
    const auto found = counts.find({facts.st_dev, facts.st_ino});
    if (found == counts.end() || found->second < facts.st_nlink) return false;
  }
  return SystemCalls::changeOwner(item, person.user, person.group);
}

}  // namespace

bool giveTree(int fromFolder, int item, const Person& person) {
  struct stat facts {};
  if (::fstat(item, &facts) != 0) return false;
  if (!S_ISDIR(facts.st_mode)) return isOursAlone(fromFolder) && giveItem(item, person, {});
  const LinkCounts counts = countLinks(item);
  const auto give = [&](int folder, const std::string& name) {
    // The top comes last and is the one that was pinned.
    if (name == ".") return giveItem(item, person, counts);
    const FileDescriptor pinned(retried(
        [&] { return ::openat(folder, name.c_str(), SystemCalls::openPath | O_NOFOLLOW | O_CLOEXEC); }));
    return pinned && isOursAlone(folder) && giveItem(pinned.get(), person, counts);
  };
  const auto visit = [&](int folder, const std::string& name) {
    return give(folder, name) ? Cause() : Cause::ofOurs(Cause::Operation::Metadata, "it keeps its owner");
  };
  return !walkTree(item, ".", {.visitItem = visit, .visitFolder = visit});
}

}  // namespace halvorn
