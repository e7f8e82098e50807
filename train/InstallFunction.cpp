#include "train/InstallFunction.h"

#include <vector>

#include "Core/Paths.h"

namespace halvorn {
namespace {

enum class Step { Done, Failed };

// Puts one top-level item of the wrapper into the target folder, over whatever bears its name there.
Step installWrapperItem(const InstallServices& services, const Text& item, const Text& target) {
  // KEEP: a removal that fails is only logged; the copy onto what is left then fails by itself.
  if (services.files.fileExists(target) && !services.files.removeItem(target)) {
    services.log("ERROR -- Could not delete %@", target);
  }
  if (!services.files.copyItem(item, target)) {
    services.log("ERROR -- Could not copy auxiliary item to %@", target);
    return Step::Failed;
  }
  services.notices.noteFileSystemChanged(target);
  return Step::Done;
}

Step installWrapper(const InstallServices& services, const Text& wrapper, const Text& targetFolder) {
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
    if (installWrapperItem(services, Paths::appending(wrapper, name), target) == Step::Failed)
      return Step::Failed;
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
  // The wrapper goes first, so an item of it that bears the destination's own name is trashed below.
  if (wrapper) {
    const Text targetFolder = Paths::deletingLastComponent(destination);
    if (installWrapper(services, *wrapper, targetFolder) == Step::Failed) return InstallStatus::copyFailed;
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
