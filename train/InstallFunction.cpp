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

// Puts one top-level item of the wrapper into the target folder, over whatever bears its name there.
Step installWrapperItem(const InstallServices& services, const Text& source, const Text& item,
                        const Text& target) {
  const bool isEntangled =
      areEntangled(services.files, item, target) || services.files.isInside(source, target);
  // KEEP: a removal that fails is only logged; the copy onto what is left then fails by itself.
  if (!isEntangled && services.files.fileExists(target) && !services.files.removeItem(target)) {
    services.log("ERROR -- Could not delete %@", target);
  }
  if (isEntangled || !services.files.copyItem(item, target)) {
    services.log("ERROR -- Could not copy auxiliary item to %@", target);
    return Step::Failed;
  }
  services.notices.noteFileSystemChanged(target);
  return Step::Done;
}

Step installWrapper(const InstallServices& services, const Text& source, const Text& wrapper,
                    const Text& targetFolder) {
  if (!services.files.fileExists(targetFolder)) {
    if (!services.files.copyItem(wrapper, targetFolder)) {
      services.log("ERROR -- Could not copy wrapper to %@", targetFolder);
      return Step::Failed;
    }
    services.notices.noteFileSystemChanged(targetFolder);
    return Step::Done;
  }
  // KEEP: a wrapper that cannot be listed counts as empty.
  const auto names = services.files.contentsOfDirectory(wrapper).value_or(std::vector<Text>{});
  for (const Text& name : names) {
    const Text target = Paths::appending(targetFolder, name);
    const Text item = Paths::appending(wrapper, name);
    if (installWrapperItem(services, source, item, target) == Step::Failed) return Step::Failed;
  }
  return Step::Done;
}

Step trashExisting(const InstallServices& services, const Text& destination) {
  if (!services.files.fileExists(destination)) return Step::Done;
  const Text folder = Paths::deletingLastComponent(destination);
  if (services.trash.recycle(folder, {Paths::lastComponent(destination)})) return Step::Done;
  services.log("ERROR -- Could not trash '%@'", destination);
  services.log("ERROR -- Could not trash existing %@", destination);
  return Step::Failed;
}

}  // namespace

std::int32_t InstallApplication(const InstallServices& services, const Text& source, const Text& destination,
                                const OptionalText& wrapper) {
  if (areEntangled(services.files, source, destination)) {
    services.log("ERROR -- Could not copy myself to %@", destination);
    return InstallStatus::copyFailed;
  }
  // The wrapper goes first, so an item of it that bears the destination's own name is trashed below.
  if (wrapper) {
    const Text targetFolder = Paths::deletingLastComponent(destination);
    if (installWrapper(services, source, *wrapper, targetFolder) == Step::Failed)
      return InstallStatus::copyFailed;
  }
  if (trashExisting(services, destination) == Step::Failed) return InstallStatus::notTrashed;
  if (!services.files.copyItem(source, destination)) {
    services.log("ERROR -- Could not copy myself to %@", destination);
    return InstallStatus::copyFailed;
  }
  services.notices.noteFileSystemChanged(destination);
  return InstallStatus::installed;
}

}  // namespace halvorn
