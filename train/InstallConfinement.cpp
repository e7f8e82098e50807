#include "train/InstallConfinement.h"

#include <ctime>
#include <utility>

#include "Core/Paths.h"
#include "Platform/files/posix/copy/SystemCalls.h"
#include "Platform/rights/posix/Confinement.h"
#include "Platform/rights/posix/RightsOf.h"

namespace halvorn {
namespace {

using Items = std::vector<FileDescriptor>;

OrCause<FileDescriptor> holdToRead(const Text& path, const InstallRights& rights) {
  constexpr auto original = Cause::Side::Original;
  const RightsOf reader(rights.files.readAs ? &*rights.files.readAs : nullptr);
  if (!reader.holds()) return causeOfMissingRights();
  const auto place = placeOf(path, LinksInTheWay::FollowedOnDisk);
  if (!place) return place.cause();
  FileDescriptor item = SystemCalls::holdItem(place->folder.get(), place->name.c_str());
  if (!item) return Cause::ofSystem(Cause::Operation::Look, original);
  return item;
}

Items foldersToWrite(const InstallPaths& paths, const InstallRights& rights, const ReachOfTrash& trash) {
  Items folders;
  // A folder that is missing is made by the wrapper, in the nearest one that is there.
  Text folder = Paths::deletingLastComponent(paths.destination);
  auto opened = rights.files.pins->open(folder.bytes());
  while (!opened && folder != Paths::deletingLastComponent(folder)) {
    folder = Paths::deletingLastComponent(folder);
    opened = rights.files.pins->open(folder.bytes());
  }
  if (!opened) return folders;
  folders = trash(opened->get());
  folders.push_back(std::move(*opened));
  return folders;
}

std::vector<int> numbersOf(const Items& items) {
  std::vector<int> numbers;
  for (const FileDescriptor& item : items) numbers.push_back(item.get());
  return numbers;
}

}  // namespace

std::optional<FileFailure> confineTo(const InstallPaths& paths, const InstallRights& rights,
                                     const ReachOfTrash& trash) {
  ::tzset();  // which reads a file, and the log wants to know
  Items toRead;
  auto source = holdToRead(paths.source, rights);
  if (!source) return source.cause().at(paths.source.bytes());
  toRead.push_back(std::move(*source));
  // A wrapper that cannot be reached cannot be read later either.
  auto wrapper = paths.wrapper ? holdToRead(*paths.wrapper, rights) : FileDescriptor();
  if (wrapper && *wrapper) toRead.push_back(std::move(*wrapper));
  const Items toWrite = foldersToWrite(paths, rights, trash);
  const Confinement::Trees trees{.toRead = numbersOf(toRead), .toWrite = numbersOf(toWrite)};
  if (Confinement::keepToTrees(trees) == Confinement::Answer::Failed ||
      Confinement::keepToFiles() == Confinement::Answer::Failed)
    return Cause::ofSystem(Cause::Operation::Reach).at(paths.destination.bytes());
  return std::nullopt;
}

}  // namespace halvorn
