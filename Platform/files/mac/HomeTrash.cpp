#include "Platform/files/mac/HomeTrash.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <ctime>
#include <utility>

#include "Core/Paths.h"
#include "Platform/files/posix/copy/SystemCalls.h"
#include "Platform/files/posix/copy/TreeOwnership.h"
#include "Platform/rights/posix/RightsOf.h"

namespace halvorn {
namespace {

constexpr int kMostNames = 1000;

// "Sample.app", then "Sample 14.05.09.app", and then with a number, as people know it from their Trash.
std::string nameFor(const std::string& name, double now, int attempt) {
  if (attempt == 0) return name;
  char time[16] = {};
  const auto seconds = static_cast<std::time_t>(now);
  struct tm parts {};
  if (::localtime_r(&seconds, &parts) != nullptr) std::strftime(time, sizeof time, "%H.%M.%S", &parts);
  const Text whole(name);
  const std::string extension = Paths::extension(whole).bytes();
  const std::string stem = Paths::deletingExtension(whole).bytes();
  const std::string number = attempt > 1 ? " " + std::to_string(attempt) : "";
  return stem + " " + time + number + (extension.empty() ? "" : "." + extension);
}

}  // namespace

HomeTrash::HomeTrash(const Clock& clock, Person owner, LinksInTheWay links, std::shared_ptr<FolderPins> pins)
    : clock_(clock), owner_(std::move(owner)), links_(links), pins_(std::move(pins)) {}

// Opened, and made where it is missing, with the person's rights: a link there leads no further than the person could.
FileDescriptor HomeTrash::openTrash() const {
  const RightsOf rights(&owner_);
  if (!rights.holds() || owner_.home.empty()) return {};
  const auto home = openFolder(owner_.home, LinksInTheWay::Followed);
  if (!home) return {};
  (void)::mkdirat(home->get(), ".Trash", S_IRWXU);
  constexpr int flags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;
  FileDescriptor trash(retried([&] { return ::openat(home->get(), ".Trash", flags); }));
  struct stat facts {};
  const bool isPersons = trash && ::fstat(trash.get(), &facts) == 0 && facts.st_uid == owner_.user;
  return isPersons ? std::move(trash) : FileDescriptor();
}

std::optional<FileFailure> HomeTrash::recycleItem(const ItemPlace& item) const {
  struct stat facts {};
  if (::fstatat(item.folder.get(), item.name.c_str(), &facts, AT_SYMLINK_NOFOLLOW) != 0)
    return Cause::ofSystem(Cause::Operation::Look).at(item.path);
  const FileDescriptor trash = openTrash();
  if (!trash) return Cause::ofOurs(Cause::Operation::Move, "the person's Trash cannot be used").at(item.path);
  const FileDescriptor held = SystemCalls::holdItem(item.folder.get(), item.name.c_str());
  int error = EEXIST;
  for (int attempt = 0; error == EEXIST && attempt < kMostNames; ++attempt) {
    const std::string name = nameFor(item.name, clock_.now().secondsSince1970, attempt);
    error =
        SystemCalls::renameWithoutReplacing(item.folder.get(), item.name.c_str(), trash.get(), name.c_str());
  }
  if (error != 0) return Cause::ofSystem(Cause::Operation::Move, Cause::Side::Copy, error).at(item.path);
  // What keeps its owner lies in the Trash all the same.
  if (held && owner_.user != ::geteuid()) (void)giveTree(item.folder.get(), held.get(), owner_);
  return std::nullopt;
}

std::optional<FileFailure> HomeTrash::recycle(const Text& sourceFolder, const std::vector<Text>& names) {
  std::optional<FileFailure> first;
  for (const Text& name : names) {
    const Text path = Paths::appending(sourceFolder, name);
    const auto place = pins_ ? placeOf(path, *pins_) : placeOf(path, links_);
    const auto failure = place ? recycleItem(*place) : std::optional(place.cause().at(path.bytes()));
    if (failure && !first) first = failure;
  }
  return first;
}

std::vector<FileDescriptor> HomeTrash::reach(int) const {
  std::vector<FileDescriptor> folders;
  if (FileDescriptor trash = openTrash()) folders.push_back(std::move(trash));
  return folders;
}

}  // namespace halvorn
