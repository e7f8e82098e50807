#include "Platform/files/linux/trash/XdgTrash.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <string_view>
#include <utility>

#include "Core/Paths.h"
#include "Platform/files/linux/trash/TrashPlaces.h"
#include "Platform/files/posix/copy/NewFolder.h"
#include "Platform/files/posix/copy/SystemCalls.h"
#include "Platform/files/posix/copy/TreeOwnership.h"
#include "Platform/rights/posix/RightsOf.h"
#include "Platform/running/posix/HeldBackSignal.h"

namespace halvorn {
namespace {

using Operation = Cause::Operation;

constexpr int kOpenFolderFlags = O_RDONLY | O_DIRECTORY | O_CLOEXEC;

// Makes the folders of the path that are missing, each for its owner alone, and opens the last. Fails: errno
// says why the first could not be made.
FileDescriptor makeFolders(const std::string& path) {
  int error = 0;
  const auto make = [&](const std::string& folder) {
    if (::mkdir(folder.c_str(), S_IRWXU) != 0 && errno != EEXIST && error == 0) error = errno;
  };
  for (std::size_t slash = path.find('/', 1); slash != std::string::npos; slash = path.find('/', slash + 1))
    make(path.substr(0, slash));
  make(path);
  FileDescriptor folder(retried([&] { return ::open(path.c_str(), kOpenFolderFlags); }));
  if (!folder && error != 0) errno = error;
  return folder;
}

Cause causeOfOtherOwner() { return Cause::ofOurs(Operation::Open, "it belongs to somebody else"); }

// The absolute path of an open folder.
OrCause<std::string> pathOf(int folder) {
  errno = 0;
  if (auto path = SystemCalls::pathOf(folder)) return std::move(*path);
  return Cause::ofSystemOrOurs(Operation::Reach, "its folder was moved or removed meanwhile");
}

}  // namespace

XdgTrash::XdgTrash(const Clock& clock, Person owner, LinksInTheWay links, std::shared_ptr<FolderPins> pins)
    : clock_(clock), owner_(std::move(owner)), links_(links), pins_(std::move(pins)) {}

std::optional<FileFailure> XdgTrash::recycle(const Text& sourceFolder, const std::vector<Text>& names) {
  const HeldBackSignal whenTooLarge(SIGXFSZ);  // the failing call tells it
  std::optional<FileFailure> first;
  const auto note = [&](const std::optional<FileFailure>& failure) {
    if (!first) first = failure;
  };
  for (const Text& name : names) {
    const Text path = Paths::appending(sourceFolder, name);
    const auto item = pins_ ? placeOf(path, *pins_) : placeOf(path, links_);
    if (!item) {
      note(item.cause().at(path.bytes()));
    } else if (item->name != name.bytes()) {
      note(Cause::ofOurs(Operation::Reach, "this is no name in a folder").at(path.bytes()));
    } else {
      note(recycleItem(*item));
    }
  }
  return first;
}

// A Trash that is there and refuses says more than one that is missing; else the last place does, since the
// others are looked for first and often cannot be.
std::optional<FileFailure> XdgTrash::recycleItem(const ItemPlace& item) const {
  struct stat facts {};
  if (::fstatat(item.folder.get(), item.name.c_str(), &facts, AT_SYMLINK_NOFOLLOW) != 0)
    return Cause::ofSystem(Operation::Look).at(item.path);
  const auto folderPath = pathOf(item.folder.get());
  if (!folderPath) return folderPath.cause().at(item.path);
  const FileDescriptor top = TrashPlaces::topOf(item.folder.get());
  if (!top) return Cause::ofSystem(Operation::Reach).at(item.path);
  const std::string path = (*folderPath == "/" ? "" : *folderPath) + "/" + item.name;
  const auto home = moveAndHandOver(homeTrash(item), item, path);
  if (!home) return std::nullopt;
  const auto topPath = pathOf(top.get());
  if (!topPath) return topPath.cause().at(item.path);
  const std::string above = *topPath == "/" ? "" : *topPath;
  const std::string relative = path.substr(above.size() + 1);
  const auto shared = moveAndHandOver(sharedTrash(top.get(), above), item, relative);
  if (!shared) return std::nullopt;
  const auto own = moveAndHandOver(ownTrash(top.get(), above), item, relative);
  if (!own) return std::nullopt;
  for (const auto& refusal : {home, shared}) {
    if (refusal->isOfATrash) return refusal->failure;
  }
  return own->failure;
}

std::optional<XdgTrash::Refusal> XdgTrash::moveAndHandOver(const Place& place, const ItemPlace& item,
                                                           const std::string& path) const {
  if (!place) return place.cause();
  const auto folder = TrashFolder::open(*place, owner_);
  if (!folder) return Refusal{.failure = folder.cause(), .isOfATrash = true};
  // Held fast before it comes to where the person can put something else in its place.
  const FileDescriptor pinned = SystemCalls::holdItem(item.folder.get(), item.name.c_str());
  const auto moved = folder->move(item, path, clock_.now());
  if (moved.outcome != TrashFolder::Outcome::Moved)
    return Refusal{.failure = moved.failure, .isOfATrash = moved.outcome == TrashFolder::Outcome::Failed};
  // It is in the Trash now; a file that cannot be handed over does not bring it back.
  if (owner_.user == ::geteuid() || !pinned) return std::nullopt;
  // Something else may have had its name by the time it was moved.
  const FileDescriptor there = SystemCalls::holdItem(folder->files(), moved.name.c_str());
  if (there && SystemCalls::isSameItem(there.get(), pinned.get()))
    (void)giveTree(item.folder.get(), pinned.get(), owner_);
  return std::nullopt;
}

XdgTrash::Place XdgTrash::homeTrash(const ItemPlace& item) const {
  const RightsOf rights(&owner_);
  if (!rights.holds()) return Refusal{.failure = causeOfMissingRights().at(item.path)};
  if (owner_.dataFolder.empty())
    return Refusal{
        .failure = Cause::ofOurs(Operation::Reach, "the person's home folder is not known").at(item.path)};
  const std::string path = owner_.dataFolder + "/Trash";
  // Asked before anything is made, so that no Trash appears where nothing can go.
  const FileDescriptor nearest = TrashPlaces::nearestFolder(path);
  if (!nearest) return Refusal{.failure = Cause::ofSystem(Operation::Reach).at(path), .isOfATrash = true};
  errno = 0;
  if (!SystemCalls::isSameFileSystem(nearest.get(), item.folder.get())) {
    const Cause cause = Cause::ofSystemOrOurs(Operation::Move, "the Trash is on another file system");
    return Refusal{.failure = cause.at(path), .isOfATrash = cause.error() != 0};
  }
  FileDescriptor folder = makeFolders(path);
  if (!folder) return Refusal{.failure = Cause::ofSystem(Operation::Make).at(path), .isOfATrash = true};
  return TrashFolder::Place{.folder = std::move(folder), .path = path};
}

XdgTrash::Place XdgTrash::sharedTrash(int top, const std::string& topPath) const {
  const std::string sharedPath = topPath + "/.Trash";
  const RightsOf rights(&owner_);
  if (!rights.holds()) return Refusal{.failure = causeOfMissingRights().at(sharedPath)};
  const FileDescriptor shared(retried(
      [&] { return ::openat(top, ".Trash", SystemCalls::openPath | kOpenFolderFlags | O_NOFOLLOW); }));
  struct stat facts {};
  if (!shared || ::fstat(shared.get(), &facts) != 0)
    return Refusal{.failure = Cause::ofSystem(Operation::Open).at(sharedPath)};
  if ((facts.st_mode & S_ISVTX) == 0)
    return Refusal{
        .failure =
            Cause::ofOurs(Operation::Open, "everybody can remove everybody's things there").at(sharedPath)};
  const std::string name = std::to_string(owner_.user);
  const std::string path = sharedPath + "/" + name;
  (void)::mkdirat(shared.get(), name.c_str(), S_IRWXU);
  FileDescriptor folder(
      retried([&] { return ::openat(shared.get(), name.c_str(), kOpenFolderFlags | O_NOFOLLOW); }));
  if (!folder) return Refusal{.failure = Cause::ofSystem(Operation::Make).at(path)};
  if (!TrashPlaces::isOwnedBy(folder.get(), owner_)) return Refusal{.failure = causeOfOtherOwner().at(path)};
  return TrashFolder::Place{.folder = std::move(folder), .path = path};
}

XdgTrash::Place XdgTrash::ownTrash(int top, const std::string& topPath) const {
  const std::string name = TrashPlaces::nameOfOwn(owner_);
  const std::string path = topPath + "/" + name;
  const auto openOwn = [&] {
    return FileDescriptor(
        retried([&] { return ::openat(top, name.c_str(), kOpenFolderFlags | O_NOFOLLOW); }));
  };
  int error = 0;
  {
    const RightsOf rights(&owner_);
    if (!rights.holds()) return Refusal{.failure = causeOfMissingRights().at(path)};
    const bool isMade = ::mkdirat(top, name.c_str(), S_IRWXU) == 0 || errno == EEXIST;
    error = errno;
    FileDescriptor folder = openOwn();
    if (folder && !TrashPlaces::isOwnedBy(folder.get(), owner_))
      return Refusal{.failure = causeOfOtherOwner().at(path)};
    if (folder) return TrashFolder::Place{.folder = std::move(folder), .path = path};
    // A folder that could be made and not opened says why; a missing one was not made.
    if (isMade) error = errno;
  }
  // The person may not make it, so the administrator does.
  if (owner_.user == ::geteuid())
    return Refusal{.failure = Cause::ofSystem(Operation::Make, Cause::Side::Copy, error).at(path)};
  if (::mkdirat(top, name.c_str(), S_IRWXU) != 0)
    return Refusal{.failure = Cause::ofSystem(Operation::Make).at(path)};
  FileDescriptor folder = openOwn();
  // Where others may write, what stands there need not be what was made.
  if (!folder) return Refusal{.failure = Cause::ofSystem(Operation::Open).at(path)};
  if (!isNewFolder(folder.get(), S_IRWXU)) return Refusal{.failure = causeOfExchange().at(path)};
  if (::fchown(folder.get(), owner_.user, owner_.group) != 0)
    return Refusal{.failure = Cause::ofSystem(Operation::Metadata).at(path)};
  return TrashFolder::Place{.folder = std::move(folder), .path = path};
}

}  // namespace halvorn
