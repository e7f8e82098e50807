#include "Platform/files/posix/copy/FolderWalk.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <span>
#include <utility>

#include "Platform/files/posix/copy/FileCopy.h"

namespace halvorn {
namespace {

// Folders above the current one stay open down to here; two descriptors each.
constexpr std::size_t kLevelsKeptOpen = 16;
constexpr std::size_t kLevelsKeptOpenWithFew = 1;

// So many files of one folder are worth another thread.
constexpr std::size_t kBatchSize = 32;

Cause look(const CopyContext& context, int folder, const char* name, struct stat& facts) {
  const RightsOf rights(context.rules.readAs);
  if (!rights.holds()) return causeOfMissingRights();
  const bool isSeen = ::fstatat(folder, name, &facts, AT_SYMLINK_NOFOLLOW) == 0;
  return isSeen ? Cause() : Cause::ofSystem(Cause::Operation::Look, Cause::Side::Original);
}

unsigned char typeOf(mode_t mode) {
  if (S_ISDIR(mode)) return DT_DIR;
  return S_ISREG(mode) ? DT_REG : DT_LNK;
}

// Files of a folder, their names kept, for another thread.
class FileBatch {
 public:
  FileBatch(std::shared_ptr<OpenFolder> folder, std::span<const char* const> names)
      : folder_(std::move(folder)) {
    for (const char* name : names) names_.emplace_back(name);
  }
  void copy(CopyContext& context, CopyScratch& scratch) const {
    std::vector<const char*> names;
    for (const std::string& name : names_) names.push_back(name.c_str());
    copyFiles(context, scratch, folder_, names);
  }

 private:
  std::shared_ptr<OpenFolder> folder_;
  std::vector<std::string> names_;
};

}  // namespace

void FolderWalk::run(std::shared_ptr<OpenFolder> folder) {
  enter(std::move(folder));
  while (!levels_.empty() && !context_.hasFailed()) {
    Level& level = levels_.back();
    if (level.nextFolder == level.folders.size()) {
      leave();
      continue;
    }
    // In the order in which they were listed: neighbours in an image are often packed together.
    const std::string name = level.folders.c_str() + level.nextFolder;
    level.nextFolder += name.size() + 1;
    const OpenFolder& above = *level.folder;
    auto child = OpenFolder::make(context_, above.source(), name.c_str(), above.target(), name.c_str(),
                                  above.path(), MayInherit::No);
    if (child == nullptr) return;
    if (context_.queue.isHungry()) {
      context_.queue.add(
          [&context = context_, child](CopyScratch& scratch) { FolderWalk(context, scratch).run(child); });
    } else {
      const auto kept = context_.hasFewDescriptors() ? kLevelsKeptOpenWithFew : kLevelsKeptOpen;
      if (levels_.size() > kept && level.folder.use_count() == 1) level.folder->park();
      enter(std::move(child));
    }
  }
}

void FolderWalk::enter(std::shared_ptr<OpenFolder> folder) {
  levels_.push_back({.folder = folder});
  visit(folder, levels_.back());
}

void FolderWalk::leave() {
  const std::shared_ptr<OpenFolder> child = std::move(levels_.back().folder);
  levels_.pop_back();
  if (!levels_.empty() && levels_.back().folder->isParked()) levels_.back().folder->unpark(*child);
}

// Copies what is no folder and notes the folders.
void FolderWalk::visit(const std::shared_ptr<OpenFolder>& folder, Level& level) {
  FolderListing& listing = scratch_.listing;
  listing.start(folder->source());
  while (!context_.hasFailed()) {
    const auto answer = listing.readSome();
    if (answer == FolderListing::Answer::End) return;
    if (answer == FolderListing::Answer::Failed)
      return folder->fail(Cause::ofSystem(Cause::Operation::List, Cause::Side::Original));
    files_.clear();
    for (const FolderEntry& entry : listing.entries()) visitEntry(folder, entry, level);
    copyHere(folder);
  }
}

void FolderWalk::visitEntry(const std::shared_ptr<OpenFolder>& folder, const FolderEntry& entry,
                            Level& level) {
  unsigned char type = entry.type;
  struct stat facts {};
  if (type != DT_REG && type != DT_DIR) {
    if (const Cause cause = look(context_, folder->source(), entry.name, facts))
      return context_.fail(cause, folder->path().get(), entry.name);
    type = typeOf(facts.st_mode);
  }
  if (type == DT_REG) {
    files_.push_back(entry.name);
  } else if (type == DT_DIR) {
    level.folders.append(entry.name).push_back('\0');
  } else {
    copyUnopened(context_,
                 {.sourceFolder = folder->source(),
                  .name = entry.name,
                  .targetFolder = folder->target(),
                  .targetName = entry.name,
                  .path = folder->path(),
                  .newItems = &folder->newItems()},
                 facts);
  }
}

void FolderWalk::copyHere(const std::shared_ptr<OpenFolder>& folder) {
  std::span<const char* const> left = files_;
  while (left.size() > kBatchSize && !context_.hasFailed()) {
    if (context_.queue.isHungry()) {
      auto batch = std::make_shared<FileBatch>(folder, left.last(kBatchSize));
      context_.queue.add(
          [&context = context_, batch](CopyScratch& scratch) { batch->copy(context, scratch); });
      left = left.first(left.size() - kBatchSize);
    } else {
      copyFiles(context_, scratch_, folder, left.first(kBatchSize));
      left = left.subspan(kBatchSize);
    }
  }
  copyFiles(context_, scratch_, folder, left);
}

}  // namespace halvorn
