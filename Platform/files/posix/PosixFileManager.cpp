#include "Platform/files/posix/PosixFileManager.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <exception>
#include <memory>
#include <utility>

#include "Platform/files/posix/BoundedFile.h"
#include "Platform/files/posix/copy/CopyObstacles.h"
#include "Platform/files/posix/copy/SystemCalls.h"
#include "Platform/files/posix/copy/TreeRemoval.h"
#include "Platform/rights/posix/RightsOf.h"

namespace halvorn {
namespace {

// Opening to read never waits for the other end of a pipe and never gets a terminal.
constexpr int kOpenToRead = O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;

// Memory may run out and threads may not start; outside of this file that is a failure like any other.
template <typename Work>
auto orFailure(const Work& work) noexcept -> decltype(work()) {
  try {
    return work();
  } catch (const std::exception&) {
    return {};
  }
}

// The same where a failure says why: nothing is not the answer then, but that all went well.
template <typename Work>
std::optional<FileFailure> orNoMemory(const Text& path, const Work& work) {
  try {
    return work();
  } catch (const std::exception&) {
    return Cause::ofSystem(Cause::Operation::Make, Cause::Side::Copy, ENOMEM).at(path.bytes());
  }
}

std::optional<std::vector<Text>> listFolder(const std::string& path, LinksInTheWay links) {
  const auto named = openFolder(path, links);
  if (!named) return std::nullopt;
  FileDescriptor folder(retried([&] { return ::openat(named->get(), ".", kOpenToRead | O_DIRECTORY); }));
  const std::unique_ptr<DIR, int (*)(DIR*)> stream(folder ? ::fdopendir(folder.get()) : nullptr, ::closedir);
  if (stream == nullptr) return std::nullopt;
  (void)folder.release();
  std::vector<Text> names;
  errno = 0;
  while (const dirent* entry = ::readdir(stream.get())) {
    const std::string name = entry->d_name;
    if (name != "." && name != "..") names.emplace_back(name);
    errno = 0;
  }
  if (errno != 0) return std::nullopt;
  return names;
}

// Whether the item at `place` is `folder` or stands somewhere in it.
bool standsIn(const ItemPlace& place, const ItemPlace& folder) {
  struct stat item {};
  struct stat wanted {};
  if (::fstatat(place.folder.get(), place.name.c_str(), &item, AT_SYMLINK_NOFOLLOW) != 0) return false;
  if (::fstatat(folder.folder.get(), folder.name.c_str(), &wanted, AT_SYMLINK_NOFOLLOW) != 0) return false;
  const auto isWanted = [&](const struct stat& facts) {
    return facts.st_dev == wanted.st_dev && facts.st_ino == wanted.st_ino;
  };
  // Two names of one file are two items; one name reached on two ways is one.
  if (!S_ISDIR(wanted.st_mode)) {
    return isWanted(item) && SystemCalls::isSameItem(place.folder.get(), folder.folder.get());
  }
  if (isWanted(item)) return true;
  FileDescriptor at(::fcntl(place.folder.get(), F_DUPFD_CLOEXEC, 0));
  while (at) {
    struct stat facts {};
    if (::fstat(at.get(), &facts) != 0) return false;
    if (isWanted(facts)) return true;
    FileDescriptor above(
        retried([&] { return ::openat(at.get(), "..", SystemCalls::openPath | O_DIRECTORY | O_CLOEXEC); }));
    if (!above || SystemCalls::isSameItem(at.get(), above.get())) return false;
    at = std::move(above);
  }
  return false;
}

}  // namespace

PosixFileManager::PosixFileManager(FileRules rules) : rules_(std::move(rules)) {}

OrCause<ItemPlace> PosixFileManager::placeToRead(const Text& path) const {
  const RightsOf rights(reader());
  if (!rights.holds()) return causeOfMissingRights();
  // What the reader may read, the reader may also reach through links.
  return placeOf(path, linksToRead());
}

LinksInTheWay PosixFileManager::linksToRead() const {
  return reader() != nullptr ? LinksInTheWay::FollowedOnDisk : LinksInTheWay::Followed;
}

OrCause<ItemPlace> PosixFileManager::placeToWrite(const Text& path) const {
  return rules_.pins ? placeOf(path, *rules_.pins) : placeOf(path, rules_.links);
}

bool PosixFileManager::fileExists(const Text& path) const {
  return orFailure([&] {
    const auto bytes = systemPath(path);
    struct stat facts {};
    return bytes && ::stat(bytes->c_str(), &facts) == 0;
  });
}

bool PosixFileManager::isDirectory(const Text& path) const {
  return orFailure([&] {
    const auto bytes = systemPath(path);
    struct stat facts {};
    return bytes && ::stat(bytes->c_str(), &facts) == 0 && S_ISDIR(facts.st_mode);
  });
}

bool PosixFileManager::isWritable(const Text& path) const {
  return orFailure([&] {
    const auto bytes = systemPath(path);
    return bytes && ::faccessat(AT_FDCWD, bytes->c_str(), W_OK, AT_EACCESS) == 0;
  });
}

std::optional<std::vector<Text>> PosixFileManager::contentsOfDirectory(const Text& path) const {
  return orFailure([&]() -> std::optional<std::vector<Text>> {
    const auto bytes = systemPath(path);
    const RightsOf rights(reader());
    if (!bytes || !rights.holds()) return std::nullopt;
    return listFolder(*bytes, linksToRead());
  });
}

std::optional<std::string> PosixFileManager::readFile(const Text& path, std::size_t limit) const {
  return orFailure([&]() -> std::optional<std::string> {
    const auto bytes = systemPath(path);
    const RightsOf rights(reader());
    if (!bytes || !rights.holds()) return std::nullopt;
    return readRegularFile(*bytes, limit);
  });
}

bool PosixFileManager::isInside(const Text& path, const Text& folder) const {
  return orFailure([&] {
    const auto item = placeOf(path, LinksInTheWay::Followed);
    const auto around = placeOf(folder, LinksInTheWay::Followed);
    return item && around && standsIn(*item, *around);
  });
}

OrCause<PosixFileManager::CopyPlaces, FileFailure> PosixFileManager::placesOfCopy(const Text& from,
                                                                                  const Text& to) const {
  auto source = placeToRead(from);
  if (!source) return source.cause().at(from.bytes());
  auto target = placeToWrite(to);
  if (!target) return target.cause().at(to.bytes());
  const auto parent = ItemPlace{
      .folder = FileDescriptor(::fcntl(target->folder.get(), F_DUPFD_CLOEXEC, 0)), .name = ".", .path = {}};
  if (standsIn(parent, *source))
    return Cause::ofOurs(Cause::Operation::Make, "it would lie inside of what is copied").at(to.bytes());
  return CopyPlaces{std::move(*source), std::move(*target)};
}

std::optional<FileFailure> PosixFileManager::copyItem(const Text& from, const Text& to) {
  return orNoMemory(to, [&]() -> std::optional<FileFailure> {
    const auto places = placesOfCopy(from, to);
    if (!places) return places.cause();
    return copyTree(places->source, places->target,
                    {.readAs = reader(), .ownership = rules_.ownership, .copied = rules_.copied});
  });
}

std::optional<FileFailure> PosixFileManager::obstacleToCopying(const Text& from, const Text& to) const {
  return orNoMemory(to, [&]() -> std::optional<FileFailure> {
    const auto source = placeToRead(from);
    if (!source) return source.cause().at(from.bytes());
    return obstacleToCopy(*source, to.bytes(),
                          {.readAs = reader(), .ownership = rules_.ownership, .copied = nullptr});
  });
}

std::optional<FileFailure> PosixFileManager::removeItem(const Text& path) {
  return orNoMemory(path, [&]() -> std::optional<FileFailure> {
    const auto place = placeToWrite(path);
    if (!place) return place.cause().at(path.bytes());
    return removeTree(*place);
  });
}

bool PosixFileManager::opensForReadingAndWriting(const Text& path) const {
  return orFailure([&] {
    const auto bytes = systemPath(path);
    const int flags = O_RDWR | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
    return bytes && static_cast<bool>(FileDescriptor(retried([&] { return ::open(bytes->c_str(), flags); })));
  });
}

bool PosixFileManager::createEmptyFile(const Text& path) {
  return orFailure([&] {
    const auto place = placeToWrite(path);
    if (!place) return false;
    const int flags = O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC;
    constexpr mode_t kForEverybody = S_IRUSR | S_IWUSR | S_IRGRP | S_IWGRP | S_IROTH | S_IWOTH;
    return static_cast<bool>(FileDescriptor(
        retried([&] { return ::openat(place->folder.get(), place->name.c_str(), flags, kForEverybody); })));
  });
}

}  // namespace halvorn
