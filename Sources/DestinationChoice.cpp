#include "Sources/DestinationChoice.h"

#include <algorithm>
#include <utility>

#include "Core/FourCharCode.h"
#include "Core/Log.h"
#include "Core/Paths.h"
#include "KTStuff/KTClasses/KTProcess.h"
#include "Platform/bundles/Workspace.h"
#include "Platform/files/FileManager.h"
#include "Platform/files/SearchPaths.h"
#include "Platform/text/FourCharCodes.h"
#include "Sources/ProductQuitter.h"

namespace halvorn {

DestinationChoice::DestinationChoice(DestinationChoiceServices services) : services_(std::move(services)) {}

OptionalText DestinationChoice::findPreferredDestinationFor(const Text& name) {
  const auto found = preferredDestinationFor(name);
  return found ? OptionalText(found->path) : std::nullopt;
}

std::optional<PreferredDestination> DestinationChoice::preferredDestinationFor(const Text& name) {
  const OptionalText item = autoLaunchPathFor(name);
  services_.log("autolaunch = %@", item);
  if (item && !isInUnsupportedFolder(item)) return PreferredDestination{*item, DestinationReason::LoginItem};
  const OptionalText running = pathToProcessToReplace();
  if (!running) return std::nullopt;
  return PreferredDestination{*running, DestinationReason::RunningCopy};
}

OptionalText DestinationChoice::autoLaunchPathFor(const Text& name) const {
  const auto items = services_.workspace.loginItems();
  if (!items) return std::nullopt;
  for (const OptionalText& item : *items) {
    // KEEP: a plain prefix test, so "Foo" also takes the login item of "FooBar.app".
    if (item && Paths::lastComponent(*item).hasPrefix(name)) return item;
  }
  return std::nullopt;
}

OptionalText DestinationChoice::pathToProcessToReplace() {
  const std::vector<Text>* codes = services_.productCodes();
  if (codes == nullptr || codes->empty()) return std::nullopt;
  const FourCharCodes& system = services_.processes.services().codes;
  const std::vector<Text> first(codes->begin(), codes->begin() + 1);
  auto process = firstProcessToReplace(
      [&](FourCharCode signature) { return signatureIsInArray(signature, &first, system); });
  if (!process && codes->size() >= 2) {
    process = firstProcessToReplace(
        [&](FourCharCode signature) { return signatureIsInArray(signature, codes, system); });
  }
  // KEEP: a process that matches but has no path ends the search without a result.
  return process ? process->path() : std::nullopt;
}

std::shared_ptr<KTProcess> DestinationChoice::firstProcessToReplace(
    const std::function<bool(FourCharCode signature)>& matches) {
  const auto self = services_.processes.currentProcess();
  for (const auto& process : services_.processes.allProcesses()) {
    const bool isSelf = self && process->isEqual(*self);
    if (matches(process->signature()) && !isSelf && !isInUnsupportedFolder(process->path())) return process;
  }
  return nullptr;
}

bool DestinationChoice::isInUnsupportedFolder(const OptionalText& path) const {
  if (!path) return false;
  // KEEP: plain searches for parts of the text, so "/buildings/wyn/" counts as well.
  const bool isDevelopmentBuild = path->contains("/build") && path->contains("/wyn/");
  const bool isOnInstallationVolume = isOnVolume(*path) && path->contains("-Install");
  // The last one is the Trash of a volume, ".Trash-" and the number of its owner.
  const bool isInTrash =
      path->contains("/Trash/") || path->contains("/.Trash/") || path->contains("/.Trash-");
  return isDevelopmentBuild || isOnInstallationVolume || isInTrash;
}

bool DestinationChoice::isOnVolume(const Text& path) const {
  if (path.contains("/Volumes/")) return true;
  const std::vector<Text> folders = services_.searchPaths.volumeFolders();
  return std::any_of(folders.begin(), folders.end(),
                     [&](const Text& folder) { return path.hasPrefix(folder + Text("/")); });
}

Text DestinationChoice::applicationsDirectory() const {
  const std::vector<Text> local = services_.searchPaths.localApplicationsFolders();
  const Text shared = local.empty() ? Text("/Applications") : local.back();
  if (services_.files.fileExists(shared) && canWriteToFileOrDirectory(shared)) return shared;
  // KEEP: says /Applications whatever the folder is.
  services_.log("Can't write to /Applications, checking ~/Applications");
  const std::vector<Text> user = services_.searchPaths.userApplicationsFolders();
  const OptionalText own = user.empty() ? OptionalText() : user.back();
  services_.log("User applicationsDirectory: %@", own);
  return own && canWriteToFileOrDirectory(*own) ? *own : shared;
}

bool DestinationChoice::canWriteToPath(const Text& path) const {
  if (services_.files.fileExists(path) && !canWriteToFileOrDirectory(path)) {
    services_.log("Cannot write to item %@", path);
    return false;
  }
  Text folder = Paths::deletingLastComponent(path);
  while (folder.length() >= 2 && !services_.files.fileExists(folder)) {
    folder = Paths::deletingLastComponent(folder);
  }
  if (canWriteToFileOrDirectory(folder)) return true;
  services_.log("Cannot write to folder %@", folder);
  return false;
}

bool DestinationChoice::canWriteToFileOrDirectory(const Text& path) const {
  return services_.files.isWritable(path);
}

bool DestinationChoice::canWriteToFile(const Text& path) const {
  return services_.files.opensForReadingAndWriting(path);
}

bool DestinationChoice::canWriteToDirectory(const Text& path) {
  Text probe;
  do {
    probe = Paths::appending(path, format("temp-%X", services_.randomNumber()));
  } while (services_.files.fileExists(probe));
  if (!services_.files.createEmptyFile(probe)) return false;
  // A probe that cannot be taken away again changes nothing about the answer.
  (void)services_.files.removeItem(probe);
  return true;
}

Text DestinationChoice::localizedPath(const Text& path) const {
  return recursiveLocalizedPath(Paths::abbreviatingWithTilde(path, services_.searchPaths.homeFolder()));
}

Text DestinationChoice::recursiveLocalizedPath(const Text& path) const {
  if (path.length() < 3) return path;
  const Text expanded = Paths::expandingTilde(
      path, services_.searchPaths.homeFolder(),
      [this](const Text& account) { return services_.searchPaths.homeFolderOf(account); });
  const Text name = services_.workspace.displayName(expanded);
  return Paths::appending(recursiveLocalizedPath(Paths::deletingLastComponent(path)), name);
}

}  // namespace halvorn
