#include "Platform/files/mac/MacTrash.h"

#import <AppKit/AppKit.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "Core/Paths.h"
#include "Platform/files/posix/copy/ItemPlace.h"
#include "Platform/running/mac/Conversions.h"

namespace halvorn {
namespace {

bool isRecycled(const Text& folder, const Text& name) {
  return answered(false, [&] {
    return static_cast<bool>([[NSWorkspace sharedWorkspace] performFileOperation:NSWorkspaceRecycleOperation
                                                                          source:stringOf(folder)
                                                                     destination:@""
                                                                           files:arrayOf({name})
                                                                             tag:NULL]);
  });
}

// The operation does not tell why: it is looked for where the system would say.
FileFailure reasonFor(const Text& path) {
  const auto place = placeOf(path, LinksInTheWay::Followed);
  if (!place) return place.cause().at(path.bytes());
  struct stat facts {};
  if (::fstatat(place->folder.get(), place->name.c_str(), &facts, AT_SYMLINK_NOFOLLOW) != 0)
    return Cause::ofSystem(Cause::Operation::Look).at(path.bytes());
  if (::faccessat(place->folder.get(), ".", W_OK, AT_EACCESS) != 0)
    return Cause::ofSystem(Cause::Operation::Move).at(path.bytes());
  return Cause::ofOurs(Cause::Operation::Move, "the workspace did not move it to the Trash").at(path.bytes());
}

}  // namespace

std::optional<FileFailure> MacTrash::recycle(const Text& sourceFolder, const std::vector<Text>& names) {
  std::optional<FileFailure> first;
  for (const Text& name : names) {
    if (!isRecycled(sourceFolder, name) && !first) first = reasonFor(Paths::appending(sourceFolder, name));
  }
  return first;
}

}  // namespace halvorn
