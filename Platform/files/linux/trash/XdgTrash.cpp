#include "Platform/files/linux/trash/XdgTrash.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <string_view>
#include <utility>

#include "Platform/files/posix/copy/NewFolder.h"
#include "Platform/files/posix/copy/SystemCalls.h"
#include "Platform/files/posix/copy/TreeOwnership.h"
#include "Platform/rights/posix/RightsOf.h"

namespace halvorn {
namespace {

constexpr int openFolderFlags = O_RDONLY | O_DIRECTORY | O_CLOEXEC;

// The folder where the file system that holds `folder` begins.
FileDescriptor topOf(int folder) {
  FileDescriptor top(retried([&] { return ::openat(folder, ".", SystemCalls::openPath | openFolderFlags); }));
  while (top) {
    FileDescriptor above(
        retried([&] { return ::openat(top.get(), "..", SystemCalls::openPath | openFolderFlags); }));
    if (!above || !SystemCalls::isSameMount(top.get(), above.get())) break;
    if (SystemCalls::isSameItem(top.get(), above.get())) break;  // the root
    top = std::move(above);
  }
  return top;
}

// Makes the folders of the path that are missing, each for its owner alone, and opens the last.
FileDescriptor makeFolders(const std::string& path) {
  for (std::size_t slash = path.find('/', 1); slash != std::string::npos; slash = path.find('/', slash + 1)) {
    ::mkdir(path.substr(0, slash).c_str(), S_IRWXU);
  }
  ::mkdir(path.c_str(), S_IRWXU);
  return FileDescriptor(retried([&] { return ::open(path.c_str(), openFolderFlags); }));
}

// The nearest folder of the path that exists.
FileDescriptor nearestFolder(std::string path) {
  while (true) {
    FileDescriptor folder(
        retried([&] { return ::open(path.c_str(), SystemCalls::openPath | openFolderFlags); }));
    const std::size_t slash = path.rfind('/');
    if (folder || slash == std::string::npos || path == "/") return folder;
    path.resize(slash == 0 ? 1 : slash);
  }
}

bool isOwnedBy(int folder, const Person& person) {
  struct stat facts {};
  return ::fstat(folder, &facts) == 0 && facts.st_uid == person.user;
}

}  // namespace

XdgTrash::XdgTrash(const Clock& clock, Person owner, LinksInTheWay links, std::shared_ptr<FolderPins> pins)
    : clock_(clock), owner_(std::move(owner)), links_(links), pins_(std::move(pins)) {}

bool XdgTrash::recycle(const Text& sourceFolder, const std::vector<Text>& names) {
  bool all = true;
  for (const Text& name : names) {
    const Text path = sourceFolder + "/" + name;
    const auto item = pins_ ? placeOf(path, *pins_) : placeOf(path, links_);
    if (!item || item->name != name.bytes() || !recycleItem(*item)) all = false;
  }
  return all;
}

bool XdgTrash::recycleItem(const ItemPlace& item) const {
  struct stat facts {};
  if (::fstatat(item.folder.get(), item.name.c_str(), &facts, AT_SYMLINK_NOFOLLOW) != 0) return false;
  const auto folderPath = SystemCalls::pathOf(item.folder.get());
  const FileDescriptor top = topOf(item.folder.get());
  if (!folderPath || !top) return false;
  const std::string path = (*folderPath == "/" ? "" : *folderPath) + "/" + item.name;
  if (moveAndHandOver(homeTrash(item), item, path)) return true;
  const auto topPath = SystemCalls::pathOf(top.get());
  if (!topPath) return false;
  const std::string relative = path.substr(*topPath == "/" ? 1 : topPath->size() + 1);
  return moveAndHandOver(sharedTrash(top.get()), item, relative) ||
         moveAndHandOver(ownTrash(top.get()), item, relative);
}

bool XdgTrash::moveAndHandOver(FileDescriptor trash, const ItemPlace& item, const std::string& path) const {
  if (!trash) return false;
  const auto folder = TrashFolder::open(std::move(trash), owner_);
  if (!folder) return false;
  // Held fast before it comes to where the person can put something else in its place.
  const FileDescriptor pinned(retried([&] {
    return ::openat(item.folder.get(), item.name.c_str(), SystemCalls::openPath | O_NOFOLLOW | O_CLOEXEC);
  }));
  if (folder->move(item, path, clock_.now()).outcome != TrashFolder::Outcome::Moved) return false;
  // It is in the Trash now; a file that cannot be handed over does not bring it back.
  if (owner_.user != ::geteuid() && pinned) (void)giveTree(item.folder.get(), pinned.get(), owner_);
  return true;
}

FileDescriptor XdgTrash::homeTrash(const ItemPlace& item) const {
  const RightsOf rights(&owner_);
  if (!rights.holds() || owner_.dataFolder.empty()) return {};
  const std::string path = owner_.dataFolder + "/Trash";
  // Asked before anything is made, so that no Trash appears where nothing can go.
  const FileDescriptor nearest = nearestFolder(path);
  if (!nearest || !SystemCalls::isSameFileSystem(nearest.get(), item.folder.get())) return {};
  return makeFolders(path);
}

FileDescriptor XdgTrash::sharedTrash(int top) const {
  const RightsOf rights(&owner_);
  if (!rights.holds()) return {};
  const FileDescriptor shared(
      retried([&] { return ::openat(top, ".Trash", SystemCalls::openPath | openFolderFlags | O_NOFOLLOW); }));
  struct stat facts {};
  if (!shared || ::fstat(shared.get(), &facts) != 0 || (facts.st_mode & S_ISVTX) == 0) return {};
  const std::string name = std::to_string(owner_.user);
  ::mkdirat(shared.get(), name.c_str(), S_IRWXU);
  FileDescriptor folder(
      retried([&] { return ::openat(shared.get(), name.c_str(), openFolderFlags | O_NOFOLLOW); }));
  return folder && isOwnedBy(folder.get(), owner_) ? std::move(folder) : FileDescriptor{};
}

FileDescriptor XdgTrash::ownTrash(int top) const {
  const std::string name = ".Trash-" + std::to_string(owner_.user);
  const auto openOwn = [&] {
    return FileDescriptor(retried([&] { return ::openat(top, name.c_str(), openFolderFlags | O_NOFOLLOW); }));
  };
  {
    const RightsOf rights(&owner_);
    if (!rights.holds()) return {};
    ::mkdirat(top, name.c_str(), S_IRWXU);
    FileDescriptor folder = openOwn();
    if (folder) return isOwnedBy(folder.get(), owner_) ? std::move(folder) : FileDescriptor{};
  }
  // The person may not make it, so the administrator does.
  if (owner_.user == ::geteuid() || ::mkdirat(top, name.c_str(), S_IRWXU) != 0) return {};
  FileDescriptor folder = openOwn();
  // Where others may write, what stands there need not be what was made.
  if (!folder || !isNewFolder(folder.get(), S_IRWXU)) return {};
  if (::fchown(folder.get(), owner_.user, owner_.group) != 0) return {};
  return folder;
}

}  // namespace halvorn
