#include "Platform/bundles/linux/LinuxBundles.h"

#include <string>
#include <utility>

#include "Core/Paths.h"
#include "Platform/bundles/linux/BundleFolder.h"
#include "Platform/bundles/linux/PreferredLanguages.h"
#include "Platform/bundles/linux/PropertyListReader.h"

namespace halvorn {
namespace {

std::vector<Text> informationFiles(const BundleFolder& bundle) {
  if (bundle.layout() == BundleFolder::Layout::Contents) return {"Contents/Info.plist"};
  return {"Resources/Info-gnustep.plist", "Resources/Info.plist", "Info.plist"};
}

void letStandIn(PropertyDictionary& info, const char* missing, const char* other) {
  const OptionalText value = textForKey(info, other);
  if (value) info.emplace(missing, *value);
}

// One bundle can name a thing for several systems: "KEY-linux" answers for "KEY" here, for every key.
void takeKeysForLinux(PropertyDictionary& info) {
  const Text forLinux = "-linux";
  PropertyDictionary answers;
  for (const auto& [key, value] : info) {
    const bool isForLinux = key.hasSuffix(forLinux) && key.length() > forLinux.length();
    if (isForLinux) answers.emplace(key.substring(0, key.length() - forLinux.length()), value);
  }
  for (const auto& [key, value] : answers) info.insert_or_assign(key, value);
}

std::optional<PropertyDictionary> readInformation(const BundleFolder& bundle) {
  for (const Text& file : informationFiles(bundle)) {
    const auto bytes = bundle.read(file, PropertyListLimits{}.fileBytes);
    auto info = bytes ? readPropertyDictionary(*bytes) : std::nullopt;
    if (!info) continue;
    takeKeysForLinux(*info);
    if (bundle.layout() == BundleFolder::Layout::Flat) {
      letStandIn(*info, "CFBundleExecutable", "NSExecutable");
      letStandIn(*info, "CFBundleIconFile", "NSIcon");
      letStandIn(*info, "CFBundleShortVersionString", "ApplicationRelease");
    }
    return info;
  }
  return std::nullopt;
}

// The name alone, since a program's name is no path.
bool isProgramName(const Text& name) {
  return staysInside(name) && name.find(u'/') == Text::npos && name != Text(".");
}

}  // namespace

LinuxBundles::LinuxBundles(const Text& programPath, std::vector<Text> languages)
    : mainBundlePath_(bundleAround(programPath).value_or(Paths::deletingLastComponent(programPath))),
      languages_(std::move(languages)) {}

std::optional<PropertyDictionary> LinuxBundles::infoDictionary(const Text& bundlePath) const {
  const auto bundle = BundleFolder::at(bundlePath);
  return bundle ? readInformation(*bundle) : std::nullopt;
}

std::vector<Text> LinuxBundles::resourceFolders(const BundleFolder& bundle) const {
  const Text resources = bundle.resources();
  std::vector<Text> folders;
  const auto add = [&](const std::vector<Text>& names) {
    for (const Text& name : names) folders.push_back(Paths::appending(resources, name + Text(".lproj")));
  };
  for (const Text& language : languages_) add(languageFolderNames(language));
  folders.push_back(resources);
  const auto info = readInformation(bundle);
  add(fallbackLanguageFolderNames(info ? textForKey(*info, "CFBundleDevelopmentRegion") : std::nullopt));
  return folders;
}

OptionalText LinuxBundles::pathForResource(const Text& bundlePath, const Text& name, const Text& type) const {
  const auto bundle = BundleFolder::at(bundlePath);
  const Text file = type.isEmpty() ? name : name + Text(".") + type;
  if (!bundle || !staysInside(file)) return std::nullopt;
  for (const Text& folder : resourceFolders(*bundle)) {
    const Text relativePath = Paths::appending(folder, file);
    if (bundle->find(relativePath)) return bundle->pathOf(relativePath);
  }
  return std::nullopt;
}

std::vector<Text> LinuxBundles::resourcePaths(const Text& bundlePath) const {
  std::vector<Text> paths;
  const auto bundle = BundleFolder::at(bundlePath);
  const auto folder = bundle ? bundle->find(bundle->resources()) : std::nullopt;
  if (!folder) return paths;
  for (const std::string& name : folderEntries(*folder)) {
    const Text relativePath = Paths::appending(bundle->resources(), Text(name));
    if (bundle->find(relativePath)) paths.push_back(bundle->pathOf(relativePath));
  }
  return paths;
}

OptionalText LinuxBundles::executablePath(const Text& bundlePath) const {
  const auto bundle = BundleFolder::at(bundlePath);
  if (!bundle) return std::nullopt;
  const bool isFlat = bundle->layout() == BundleFolder::Layout::Flat;
  const auto info = readInformation(*bundle);
  OptionalText name = info ? textForKey(*info, "CFBundleExecutable") : std::nullopt;
  if (!name && isFlat && Paths::extension(bundlePath) == Text("app")) name = bundle->name();
  if (!name || !isProgramName(*name)) return std::nullopt;
  const std::vector<Text> folders =
      isFlat ? std::vector<Text>{""} : std::vector<Text>{"Contents/Linux", "Contents/MacOS"};
  for (const Text& folder : folders) {
    const Text relativePath = Paths::appending(folder, *name);
    const auto item = bundle->find(relativePath);
    if (item && isRegularFile(*item)) return bundle->pathOf(relativePath);
  }
  return std::nullopt;
}

std::optional<PropertyDictionary> LinuxBundles::dictionaryAtPath(const Text& path) const {
  return readPropertyListFile(path.bytes());
}

}  // namespace halvorn
