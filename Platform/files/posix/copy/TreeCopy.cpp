#include "Platform/files/posix/copy/TreeCopy.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <csignal>

#include "Platform/files/posix/copy/FileCopy.h"
#include "Platform/files/posix/copy/FolderWalk.h"
#include "Platform/files/posix/copy/SystemCalls.h"
#include "Platform/running/posix/HeldBackSignal.h"

namespace halvorn {
namespace {

constexpr unsigned kMostWorkers = 8;

unsigned usualWorkers() { return std::min(SystemCalls::usableProcessors(), kMostWorkers); }

void copyTop(CopyContext& context, CopyScratch& scratch, const CopyPlace& place) {
  struct stat facts {};
  {
    const RightsOf rights(context.rules.readAs);
    if (!rights.holds()) return context.fail(causeOfMissingRights(), place);
    if (::fstatat(place.sourceFolder, place.name, &facts, AT_SYMLINK_NOFOLLOW) != 0)
      return context.fail(Cause::ofSystem(Cause::Operation::Look, Cause::Side::Original), place);
  }
  if (S_ISREG(facts.st_mode)) return copyFile(context, scratch, place);
  if (!S_ISDIR(facts.st_mode)) return copyUnopened(context, place, facts);
  auto folder = OpenFolder::make(context, place.sourceFolder, place.name, place.targetFolder,
                                 place.targetName, place.path, place.mayInherit);
  if (folder != nullptr) FolderWalk(context, scratch).run(std::move(folder));
}

}  // namespace

std::optional<FileFailure> copyTree(const ItemPlace& from, const ItemPlace& to, const CopyRules& rules) {
  CopyContext context(rules, to.folder.get(), from.path, to.path);
  // A file that is too large is told by the call that fails.
  const HeldBackSignal whenTooLarge(SIGXFSZ);
  context.allowWorkers(usualWorkers());
  const CopyPlace place{.sourceFolder = from.folder.get(),
                        .name = from.name.c_str(),
                        .targetFolder = to.folder.get(),
                        .targetName = to.name.c_str(),
                        .path = nullptr,
                        .mayInherit = MayInherit::Yes};
  context.queue.runAll([&](CopyScratch& scratch) { copyTop(context, scratch, place); });
  return context.failure();
}

}  // namespace halvorn
