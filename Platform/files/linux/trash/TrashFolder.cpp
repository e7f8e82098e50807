#include "Platform/files/linux/trash/TrashFolder.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <utility>

#include "Platform/files/posix/copy/SystemCalls.h"
#include "Platform/rights/posix/RightsOf.h"

namespace halvorn {
namespace {

constexpr int kMostAttempts = 10'000;
// An overlay of file systems, above all: a folder below its topmost layer can be copied and not moved.
constexpr const char* kUnmovable = "its file system cannot move it, for it lies in a layer that is only read";

using Operation = Cause::Operation;

// The folder of that name, made when it is missing. Fails: unless it belongs to the person.
OrCause<FileDescriptor> openOwnFolder(int parent, const char* name, const Person& owner) {
  if (::mkdirat(parent, name, S_IRWXU) != 0 && errno != EEXIST) return Cause::ofSystem(Operation::Make);
  FileDescriptor folder(
      retried([&] { return ::openat(parent, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC); }));
  struct stat facts {};
  if (!folder || ::fstat(folder.get(), &facts) != 0) return Cause::ofSystem(Operation::Open);
  if (facts.st_uid != owner.user) return Cause::ofOurs(Operation::Open, "it belongs to somebody else");
  return folder;
}

Cause writeWhole(int file, const std::string& text) {
  std::size_t done = 0;
  while (done < text.size()) {
    const ssize_t count = retried([&] { return ::write(file, text.data() + done, text.size() - done); });
    if (count < 0) return Cause::ofSystem(Operation::Write);
    if (count == 0) return Cause::ofOurs(Operation::Write, "nothing more was written");
    done += static_cast<std::size_t>(count);
  }
  return {};
}

// A folder that its owner may not write cannot change its parent, and nobody could
// take it out of the Trash again.
bool makeFolderMovable(const ItemPlace& item) {
  FileDescriptor folder(retried([&] {
    return ::openat(item.folder.get(), item.name.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
  }));
  struct stat facts {};
  if (!folder || ::fstat(folder.get(), &facts) != 0 || facts.st_uid != ::geteuid()) return false;
  if ((facts.st_mode & S_IWUSR) != 0) return false;
  return ::fchmod(folder.get(), (facts.st_mode & 07777) | S_IWUSR) == 0;
}

enum class Naming { Written, Taken };

OrCause<Naming> writeInformation(int folder, const std::string& name, const std::string& text) {
  FileDescriptor file(retried([&] {
    return ::openat(folder, name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC,
                    S_IRUSR | S_IWUSR);
  }));
  if (!file && errno == EEXIST) return Naming::Taken;
  if (!file) return Cause::ofSystem(Operation::Make);
  Cause cause = writeWhole(file.get(), text);
  if (!cause && !file.closeAfterWriting()) cause = Cause::ofSystem(Operation::Write);
  if (!cause) return Naming::Written;
  ::unlinkat(folder, name.c_str(), 0);
  return cause;
}

int renameWithoutReplacing(const ItemPlace& item, int folder, const std::string& name) {
  int error = SystemCalls::renameWithoutReplacing(item.folder.get(), item.name.c_str(), folder, name.c_str());
  if (error == EACCES && makeFolderMovable(item)) {
    error = SystemCalls::renameWithoutReplacing(item.folder.get(), item.name.c_str(), folder, name.c_str());
  }
  return error;
}

}  // namespace

TrashFolder::TrashFolder(FileDescriptor files, FileDescriptor info, std::string path, const Person& owner)
    : files_(std::move(files)), info_(std::move(info)), path_(std::move(path)), owner_(&owner) {}

OrCause<TrashFolder, FileFailure> TrashFolder::open(const Place& place, const Person& owner) {
  const RightsOf rights(&owner);
  if (!rights.holds()) return causeOfMissingRights().at(place.path);
  auto files = openOwnFolder(place.folder.get(), "files", owner);
  if (!files) return files.cause().at(place.path + "/files");
  auto info = openOwnFolder(place.folder.get(), "info", owner);
  if (!info) return info.cause().at(place.path + "/info");
  return TrashFolder(std::move(*files), std::move(*info), place.path, owner);
}

TrashFolder::Moved TrashFolder::move(const ItemPlace& item, const std::string& path, Date when) const {
  const std::string text = TrashInformation::text(path, when);
  for (int attempt = 1; attempt <= kMostAttempts; ++attempt) {
    const std::string name = TrashInformation::nameForAttempt(item.name, attempt);
    const std::string information = name + ".trashinfo";
    const auto withRights = [&](const auto& work) -> OrCause<Naming> {
      const RightsOf rights(owner_);
      if (!rights.holds()) return causeOfMissingRights();
      return work();
    };
    const auto naming = withRights([&] { return writeInformation(info_.get(), information, text); });
    if (!naming) return {.failure = naming.cause().at(path_ + "/info/" + information)};
    if (*naming == Naming::Taken) continue;
    const int error = renameWithoutReplacing(item, files_.get(), name);
    if (error == 0) return {.outcome = Outcome::Moved, .name = name};
    (void)withRights([&] {
      ::unlinkat(info_.get(), information.c_str(), 0);
      return Naming::Taken;
    });
    const auto failure = Cause::ofSystem(Operation::Move, Cause::Side::Original, error).at(item.path);
    if (error == EXDEV && SystemCalls::isSameMount(item.folder.get(), files_.get()))
      return {.failure = Cause::ofOurs(Operation::Move, kUnmovable, Cause::Side::Original).at(item.path)};
    if (error == EXDEV) return {.outcome = Outcome::Elsewhere, .failure = failure};
    if (error != EEXIST && error != ENOTEMPTY) return {.failure = failure};
  }
  return {.failure = Cause::ofOurs(Operation::Move, "every name in the Trash is taken").at(item.path)};
}

}  // namespace halvorn
