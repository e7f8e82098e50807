#include "Platform/files/posix/copy/CopyObstacles.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <vector>

#include "Platform/files/posix/copy/TreeWalk.h"
#include "Platform/rights/posix/RightsOf.h"
#include "Platform/running/posix/ResourceLimits.h"

namespace halvorn {
namespace {

using Operation = Cause::Operation;

// Of a tree however deep, with files of several names, and the Trash before it.
constexpr unsigned kFewestDescriptors = 14;
constexpr rlim_t kUsualLimit = 1024;

// The first file in there that is larger than that. What cannot be looked at is told when it is copied.
std::optional<FileFailure> fileLargerThan(rlim_t limit, const ItemPlace& from) {
  bool isFound = false;
  const auto compare = [&](int folder, const std::string& name) {
    struct stat facts {};
    if (isFound || ::fstatat(folder, name.c_str(), &facts, AT_SYMLINK_NOFOLLOW) != 0) return Cause();
    isFound = S_ISREG(facts.st_mode) && static_cast<rlim_t>(facts.st_size) > limit;
    return isFound ? Cause::ofSystem(Operation::Write, Cause::Side::Original, EFBIG) : Cause();
  };
  const auto pass = [](int, const std::string&) { return Cause(); };
  const auto failure = walkTree(from.folder.get(), from.name, {.visitItem = compare, .visitFolder = pass});
  if (!isFound) return std::nullopt;
  const bool isNamed = failure->cause.error() == EFBIG;
  return Cause::ofSystem(Operation::Write, Cause::Side::Original, EFBIG)
      .at(isNamed ? from.path + failure->path : from.path);
}

}  // namespace

unsigned descriptorsLeft(int any, unsigned most) {
  rlimit open{};
  if (::getrlimit(RLIMIT_NOFILE, &open) != 0 || open.rlim_cur >= kUsualLimit) return most;
  std::vector<FileDescriptor> tried;
  while (tried.size() < most) {
    FileDescriptor next(::fcntl(any, F_DUPFD_CLOEXEC, 0));
    if (!next) break;
    tried.push_back(std::move(next));
  }
  return static_cast<unsigned>(tried.size());
}

std::optional<FileFailure> obstacleToCopy(const ItemPlace& from, const std::string& to,
                                          const CopyRules& rules) {
  if (descriptorsLeft(from.folder.get(), kFewestDescriptors) < kFewestDescriptors)
    return Cause::ofSystem(Operation::Make, Cause::Side::Copy, EMFILE).at(to);
  const RightsOf rights(rules.readAs);
  if (!rights.holds()) return causeOfMissingRights().at(from.path);
  struct stat facts {};
  if (::fstatat(from.folder.get(), from.name.c_str(), &facts, AT_SYMLINK_NOFOLLOW) != 0)
    return Cause::ofSystem(Operation::Look, Cause::Side::Original).at(from.path);
  (void)raiseLimit(RLIMIT_FSIZE, RLIM_INFINITY);
  rlimit size{};
  if (::getrlimit(RLIMIT_FSIZE, &size) != 0 || size.rlim_cur == RLIM_INFINITY) return std::nullopt;
  return fileLargerThan(size.rlim_cur, from);
}

}  // namespace halvorn
