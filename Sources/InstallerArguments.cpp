#include "Sources/InstallerArguments.h"

#include "Core/Log.h"
#include "Core/Paths.h"
#include "KTStuff/KTClasses/KTInstallerInterface.h"
#include "Platform/files/FileManager.h"

namespace halvorn {

OptionalText productNameFromSourcePath(const OptionalText& sourcePath) {
  if (!sourcePath) return std::nullopt;
  return Paths::deletingExtension(Paths::lastComponent(*sourcePath));
}

InstallerArguments::InstallerArguments(ArgumentDictionary& arguments, const FileManager& files,
                                       const Log& log)
    : arguments_(arguments), files_(files), log_(log) {}

void InstallerArguments::extract(const std::vector<Text>& argumentList) {
  log_("arguments: %@", describe(argumentList));
  // KEEP: the key stays in force after a value, so -quitCode ABCD EFGH gives two codes and the program path,
  // which comes before any key, lands under the empty key.
  Text key;
  for (const Text& argument : argumentList) {
    if (argument.hasPrefix("-")) {
      key = argument.substring(1);
    } else if (key.hasSuffix("Code")) {
      arguments_.append(key, argument);
    } else {
      arguments_.set(key, argument);
    }
  }
}

bool InstallerArguments::completeSourcePath(const Text& installerBundlePath) {
  if (arguments_.has(KTInstallerKeySourcePath)) return true;
  Text path = Paths::deletingLastComponent(installerBundlePath);
  while (path.length() > 1 && !path.hasSuffix(".app")) {
    path = Paths::deletingLastComponent(path);
    log_("shortened path = %@", path);
  }
  if (!path.hasSuffix(".app")) return false;
  arguments_.set(KTInstallerKeySourcePath, path);
  return true;
}

bool InstallerArguments::completeProductName() {
  if (arguments_.has(KTInstallerKeyProductName)) return true;
  const OptionalText name = productNameFromSourcePath(arguments_.text(KTInstallerKeySourcePath));
  if (!name) return false;
  arguments_.set(KTInstallerKeyProductName, *name);
  return true;
}

OptionalText InstallerArguments::version(const PropertyDictionary& info) const {
  const OptionalText given = arguments_.text(KTInstallerKeyVersion);
  return given ? given : textForKey(info, "CFBundleShortVersionString");
}

OptionalText InstallerArguments::minSystemVersion(const PropertyDictionary& info) const {
  const OptionalText given = arguments_.text(KTInstallerKeyMinSystemVersion);
  return given ? given : textForKey(info, "LSMinimumSystemVersion");
}

PreferredDestination InstallerArguments::chosenDestination(DestinationChoice& choice) const {
  std::optional<PreferredDestination> chosen;
  if (const OptionalText given = arguments_.text(KTInstallerKeyDestinationPath)) {
    chosen = {*given, DestinationReason::Given};
  } else {
    chosen = choice.preferredDestinationFor(arguments_.text(KTInstallerKeyProductName).value_or(Text()));
  }
  if (chosen && files_.isDirectory(Paths::deletingLastComponent(chosen->path))) return *chosen;
  const Text source = arguments_.text(KTInstallerKeySourcePath).value_or(Text());
  const bool isGiven = chosen && chosen->reason == DestinationReason::Given;
  return {Paths::appending(choice.applicationsDirectory(), Paths::lastComponent(source)),
          isGiven ? DestinationReason::GivenOneIsUnusable : DestinationReason::ApplicationsFolder};
}

Text InstallerArguments::insideWrapper(const Text& destination) const {
  const Text wrapperName = Paths::lastComponent(arguments_.text(KTInstallerKeyWrapperPath).value_or(Text()));
  const Text folder = Paths::deletingLastComponent(destination);
  if (Paths::lastComponent(folder) == wrapperName) return destination;
  return Paths::appending(Paths::appending(folder, wrapperName), Paths::lastComponent(destination));
}

void InstallerArguments::completeDestination(DestinationChoice& choice) {
  const PreferredDestination chosen = chosenDestination(choice);
  destinationReason_ = chosen.reason;
  Text destination = chosen.path;
  if (const OptionalText wrapper = arguments_.text(KTInstallerKeyWrapperPath)) {
    const Text source = arguments_.text(KTInstallerKeySourcePath).value_or(Text());
    // KEEP: a comparison of texts, so a wrapper beside the source's folder whose
    // name only begins alike passes too.
    if (wrapper->hasPrefix(Paths::deletingLastComponent(source)) && files_.fileExists(*wrapper)) {
      log_("wrapper = %@", *wrapper);
      destination = insideWrapper(destination);
    } else {
      arguments_.remove(KTInstallerKeyWrapperPath);
    }
  }
  arguments_.set(KTInstallerKeyDestinationPath, destination);
}

void InstallerArguments::completeDocumentation() {
  const OptionalText path = arguments_.text(KTInstallerKeyDocumentationPath);
  if (path && !files_.fileExists(*path)) arguments_.remove(KTInstallerKeyDocumentationPath);
}

bool InstallerArguments::completeCodes(const PropertyDictionary& info) {
  if (!arguments_.list(KTInstallerKeyProductCode)) {
    const OptionalText signature = textForKey(info, "CFBundleSignature");
    if (!signature) return false;
    arguments_.set(KTInstallerKeyProductCode, std::vector<Text>{*signature});
  }
  // KEEP: duplicates stay.
  for (const Text& code : *arguments_.list(KTInstallerKeyProductCode))
    arguments_.append(KTInstallerKeyQuitCode, code);
  log_("Updated arguments: %@", arguments_.description());
  return true;
}

}  // namespace halvorn
