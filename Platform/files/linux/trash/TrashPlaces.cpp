#include "Platform/files/linux/trash/TrashPlaces.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <utility>

#include "Platform/files/linux/trash/XdgTrash.h"
#include "Platform/files/posix/copy/SystemCalls.h"
#include "Platform/rights/posix/RightsOf.h"

namespace halvorn {
namespace {

constexpr int kOpenFolderFlags = O_RDONLY | O_DIRECTORY | O_CLOEXEC;

}  // namespace

FileDescriptor TrashPlaces::topOf(int folder) {
  FileDescriptor top(
      retried([&] { return ::openat(folder, ".", SystemCalls::openPath | kOpenFolderFlags); }));
  while (top) {
    FileDescriptor above(
        retried([&] { return ::openat(top.get(), "..", SystemCalls::openPath | kOpenFolderFlags); }));
    if (!above || !SystemCalls::isSameMount(top.get(), above.get())) break;
    if (SystemCalls::isSameItem(top.get(), above.get())) break;  // the root
    top = std::move(above);
  }
  return top;
}

FileDescriptor TrashPlaces::nearestFolder(std::string path) {
  while (true) {
    FileDescriptor folder(
        retried([&] { return ::open(path.c_str(), SystemCalls::openPath | kOpenFolderFlags); }));
    const std::size_t slash = path.rfind('/');
    if (folder || slash == std::string::npos || path == "/") return folder;
    path.resize(slash == 0 ? 1 : slash);
  }
}

bool TrashPlaces::isOwnedBy(int folder, const Person& person) {
  struct stat facts {};
  return ::fstat(folder, &facts) == 0 && facts.st_uid == person.user;
}

std::string TrashPlaces::nameOfOwn(const Person& person) { return ".Trash-" + std::to_string(person.user); }

FileDescriptor XdgTrash::reachAtHome(int folder) const {
  const RightsOf rights(&owner_);
  if (!rights.holds() || owner_.dataFolder.empty()) return {};
  const std::string trash = owner_.dataFolder + "/Trash";
  for (const char* part : {"/files", "/info"}) {
    const FileDescriptor nearest = TrashPlaces::nearestFolder(trash + part);
    if (!nearest || !TrashPlaces::isOwnedBy(nearest.get(), owner_)) return {};
  }
  FileDescriptor nearest = TrashPlaces::nearestFolder(trash);
  const bool isNear = nearest && SystemCalls::isSameFileSystem(nearest.get(), folder);
  return isNear ? std::move(nearest) : FileDescriptor();
}

std::vector<FileDescriptor> XdgTrash::reach(int folder) const {
  std::vector<FileDescriptor> folders;
  if (FileDescriptor home = reachAtHome(folder)) folders.push_back(std::move(home));
  FileDescriptor top = TrashPlaces::topOf(folder);
  if (!top) return folders;
  for (const std::string& name : {std::string(".Trash"), TrashPlaces::nameOfOwn(owner_)}) {
    FileDescriptor trash(retried([&] {
      return ::openat(top.get(), name.c_str(), SystemCalls::openPath | kOpenFolderFlags | O_NOFOLLOW);
    }));
    if (trash) folders.push_back(std::move(trash));
  }
  // One will be made.
  if (folders.empty()) folders.push_back(std::move(top));
  return folders;
}

}  // namespace halvorn
