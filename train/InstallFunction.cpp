#include "train/InstallFunction.h"

#include <vector>

#include "Core/Paths.h"

namespace halvorn {
namespace {

enum class Step { Done, Failed };

// Whether one of the two lies in the other, `target` perhaps not being there yet. Removing or trashing the
// one would take the other along.
bool areEntangled(const FileManager& files, const Text& item, const Text& target) {
  const Text targetFolder = Paths::deletingLastComponent(target);
  return files.isInside(item, target) || files.isInside(target, item) || files.isInside(targetFolder, item);
}

// What the next line in the log came from.
void logCause(const Log& log, const FileFailure& failure) {
  log("CAUSE -- %@: %@ (%@)", failure.reason, failure.path, nameOf(failure.operation));
}

FileFailure entanglement(const Text& target) {
  return {.operation = FileFailure::Operation::Make,
          .path = target,
          .reason = "what is copied and what is replaced lie one in the other"};
}

// Puts one top-level item of the wrapper into the target folder, over whatever bears its name there.
Step installWrapperItem(const InstallServices& services, const Text& source, const Text& item,
                        const Text& target) {
  const bool isEntangled =
      areEntangled(services.files, item, target) || services.files.isInside(source, target);
  // KEEP: a removal that fails is only logged; the copy onto what is left then fails by itself.
  if (!isEntangled && services.files.fileExists(target)) {
    if (const auto failure = services.files.removeItem(target)) {
      logCause(services.log, *failure);
      services.log("ERROR -- Could not delete %@", target);
    }
  }
  const auto failure = isEntangled ? entanglement(target) : services.files.copyItem(item, target);
  if (failure) {
    logCause(services.log, *failure);
    services.log("ERROR -- Could not copy auxiliary item to %@", target);
    return Step::Failed;
  }
  services.notices.noteFileSystemChanged(target);
  return Step::Done;
}

// KEEP: a wrapper that cannot be listed counts as empty.
std::vector<Text> itemsOfWrapper(const FileManager& files, const Text& wrapper) {
  return files.contentsOfDirectory(wrapper).value_or(std::vector<Text>{});
}

Step installWrapper(const InstallServices& services, const Text& source, const Text& wrapper,
                    const Text& targetFolder) {
  if (!services.files.fileExists(targetFolder)) {
    if (const auto failure = services.files.copyItem(wrapper, targetFolder)) {
      logCause(services.log, *failure);
      services.log("ERROR -- Could not copy wrapper to %@", targetFolder);
      return Step::Failed;
    }
    services.notices.noteFileSystemChanged(targetFolder);
    return Step::Done;
  }
  for (const Text& name : itemsOfWrapper(services.files, wrapper)) {
    const Text target = Paths::appending(targetFolder, name);
    const Text item = Paths::appending(wrapper, name);
    if (installWrapperItem(services, source, item, target) == Step::Failed) return Step::Failed;
  }
  return Step::Done;
}

Step trashExisting(const InstallServices& services, const Text& destination) {
  if (!services.files.fileExists(destination)) return Step::Done;
  const Text folder = Paths::deletingLastComponent(destination);
  const auto failure = services.trash.recycle(folder, {Paths::lastComponent(destination)});
  if (!failure) return Step::Done;
  logCause(services.log, *failure);
  services.log("ERROR -- Could not trash '%@'", destination);
  services.log("ERROR -- Could not trash existing %@", destination);
  return Step::Failed;
}

}  // namespace

std::optional<FileFailure> obstacleToInstalling(const FileManager& files, const Text& source,
                                                const Text& destination) {
  if (areEntangled(files, source, destination)) return entanglement(destination);
  return files.obstacleToCopying(source, destination);
}

Replacements replacementsOf(const FileManager& files, const Text& destination, const OptionalText& wrapper) {
  Replacements replaced;
  if (files.fileExists(destination)) replaced.trashed = destination;
  const Text targetFolder = Paths::deletingLastComponent(destination);
  if (!wrapper || !files.fileExists(targetFolder)) return replaced;
  for (const Text& name : itemsOfWrapper(files, *wrapper)) {
    const Text target = Paths::appending(targetFolder, name);
    if (files.fileExists(target)) replaced.removed.push_back(target);
  }
  return replaced;
}

InstallResult refuseToInstall(const Log& log, const FileFailure& failure, const Text& destination) {
  logCause(log, failure);
  log("ERROR -- Could not copy myself to %@", destination);
  return InstallResult::CopyFailed;
}

InstallResult InstallApplication(const InstallServices& services, const Text& source, const Text& destination,
                                 const OptionalText& wrapper) {
  const auto notCopied = [&](const FileFailure& failure) {
    return refuseToInstall(services.log, failure, destination);
  };
  // What can be known beforehand is known before the old copy is moved.
  if (const auto obstacle = obstacleToInstalling(services.files, source, destination))
    return notCopied(*obstacle);
  // The wrapper goes first, so an item of it that bears the destination's own name is trashed below.
  if (wrapper) {
    const Text targetFolder = Paths::deletingLastComponent(destination);
    if (installWrapper(services, source, *wrapper, targetFolder) == Step::Failed)
      return InstallResult::CopyFailed;
  }
  if (trashExisting(services, destination) == Step::Failed) return InstallResult::NotTrashed;
  if (const auto failure = services.files.copyItem(source, destination)) return notCopied(*failure);
  services.notices.noteFileSystemChanged(destination);
  return InstallResult::Installed;
}

}  // namespace halvorn
