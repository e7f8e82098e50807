#include "Sources/DestinationChoice.h"

#include <utility>

#include "Core/FourCharCode.h"
#include "Core/Log.h"
#include "Core/Paths.h"
#include "KTStuff/KTClasses/KTProcess.h"
#include "Platform/FileManager.h"
#include "Platform/LoginItems.h"
#include "Platform/SearchPaths.h"
#include "Platform/Workspace.h"
#include "Sources/ProductQuitter.h"

namespace halvorn {

DestinationChoice::DestinationChoice(DestinationChoiceServices services) : services_(std::move(services)) {}

OptionalText DestinationChoice::findPreferredDestinationFor(const Text& name) {
  const OptionalText path = autoLaunchPathFor(name);
  services_.log("autolaunch = %@", path);
  if (!path || isInUnsupportedFolder(path)) return pathToProcessToReplace();
  return path;
}

OptionalText DestinationChoice::autoLaunchPathFor(const Text& name) const {
  const auto items = services_.loginItems.snapshot();
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
  const FourCharCode first = fourCharCodeFromText(codes->front());
  const OptionalText path =
      pathOfFirstProcess([first](FourCharCode signature) { return signature == first; });
  if (path || codes->size() < 2) return path;
  return pathOfFirstProcess([codes](FourCharCode signature) { return signatureIsInArray(signature, codes); });
}

OptionalText DestinationChoice::pathOfFirstProcess(
    const std::function<bool(std::uint32_t signature)>& matches) {
  const auto self = services_.processes.currentProcess();
  for (const auto& process : services_.processes.allProcesses()) {
    if (!matches(process->signature()) || (self && process->isEqual(*self))) continue;
    const OptionalText path = process->path();
    if (path && !isInUnsupportedFolder(path)) return path;
  }
  return std::nullopt;
}

bool DestinationChoice::isInUnsupportedFolder(const OptionalText& path) const {
  if (!path) return false;
  return (path->contains("/build") && path->contains("/wyn/")) ||
         (path->contains("/Volumes/") && path->contains("-Install")) || path->contains("/Trash/") ||
         path->contains("/.Trash/");
}

}  // namespace halvorn
