#include "Platform/posix/TreeOwnership.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <map>
#include <utility>

#include "Platform/posix/SystemCalls.h"
#include "Platform/posix/TreeWalk.h"

namespace halvorn {
namespace {

using LinkCounts = std::map<std::pair<dev_t, ino_t>, nlink_t>;

bool isSharedFile(const struct stat& facts) { return !S_ISDIR(facts.st_mode) && facts.st_nlink > 1; }

// How often each file with several names stands in the tree.
LinkCounts countLinks(int folder, const std::string& name) {
  LinkCounts counts;
  const TreeVisitor counter{.visitItem =
                                [&](int parent, const std::string& item) {
                                  struct stat facts {};
                                  if (::fstatat(parent, item.c_str(), &facts, AT_SYMLINK_NOFOLLOW) != 0)
                                    return false;
                                  if (isSharedFile(facts)) ++counts[{facts.st_dev, facts.st_ino}];
                                  return true;
                                },
                            .visitFolder = [](int, const std::string&) { return true; }};
  (void)walkTree(folder, name, counter);
  return counts;
}

bool give(int folder, const std::string& name, const Person& person, const LinkCounts& counts) {
  // Pinned first, so that what was looked at is what is given.
  const FileDescriptor item(retried(
      [&] { return ::openat(folder, name.c_str(), SystemCalls::openPath | O_NOFOLLOW | O_CLOEXEC); }));
  struct stat facts {};
  if (!item || ::fstat(item.get(), &facts) != 0) return false;
  if (isSharedFile(facts)) {
    const auto found = counts.find({facts.st_dev, facts.st_ino});
    if (found == counts.end() || found->second < facts.st_nlink) return false;
  }
  return SystemCalls::changeOwner(item.get(), person.user, person.group);
}

}  // namespace

bool giveTree(int folder, const std::string& name, const Person& person) {
  const LinkCounts counts = countLinks(folder, name);
  const auto giveItem = [&](int parent, const std::string& item) {
    return give(parent, item, person, counts);
  };
  return walkTree(folder, name, {.visitItem = giveItem, .visitFolder = giveItem});
}

}  // namespace halvorn
