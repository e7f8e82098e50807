#include "Platform/files/posix/copy/TreeRemoval.h"

#include <fcntl.h>
#include <unistd.h>

#include "Platform/files/posix/copy/TreeWalk.h"

namespace halvorn {

namespace {

Cause removeOne(int folder, const std::string& name, int flags) {
  const bool isGone = ::unlinkat(folder, name.c_str(), flags) == 0;
  return isGone ? Cause() : Cause::ofSystem(Cause::Operation::Remove);
}

}  // namespace

std::optional<FileFailure> removeTree(const ItemPlace& place) {
  // Asked first, since it decides whether anything in here may be removed at all.
  const Cause cause = removeOne(place.folder.get(), place.name, 0);
  if (!cause) return std::nullopt;
  if (cause.error() != EISDIR && cause.error() != EPERM) return cause.at(place.path);
  const TreeVisitor remover{
      .visitItem = [](int folder, const std::string& name) { return removeOne(folder, name, 0); },
      .visitFolder = [](int folder,
                        const std::string& name) { return removeOne(folder, name, AT_REMOVEDIR); }};
  const auto failure = walkTree(place.folder.get(), place.name, remover);
  if (!failure) return std::nullopt;
  return failure->cause.at(place.path + failure->path);
}

}  // namespace halvorn
