#include "Platform/bundles/linux/LinuxLocalizedStrings.h"

#include "Core/Paths.h"
#include "Platform/bundles/linux/BundleFolder.h"
#include "Platform/bundles/linux/PreferredLanguages.h"
#include "Platform/bundles/linux/PropertyListReader.h"

namespace halvorn {
namespace {

constexpr char kDefaultTable[] = "Localizable";

PropertyDictionary readTable(const Text& bundlePath, const std::vector<Text>& languages) {
  const auto bundle = BundleFolder::at(bundlePath);
  if (!bundle) return {};
  if (auto table = readStringTableOf(*bundle, languages, kDefaultTable)) return *table;
  for (const Text& folder : fallbackLanguageFolderNames(std::nullopt)) {
    if (auto table = readStringTableOf(*bundle, folder, kDefaultTable)) return *table;
  }
  return {};
}

}  // namespace

LinuxLocalizedStrings::LinuxLocalizedStrings(const Text& bundlePath, const std::vector<Text>& languages)
    : table_(readTable(bundlePath, languages)) {}

Text LinuxLocalizedStrings::localized(const Text& key) const { return textForKey(table_, key).value_or(key); }

std::optional<PropertyDictionary> readStringTableOf(const BundleFolder& bundle, const Text& languageFolder,
                                                    const Text& table) {
  const Text folder = Paths::appending(bundle.resources(), languageFolder + Text(".lproj"));
  const auto bytes =
      bundle.read(Paths::appending(folder, table + Text(".strings")), PropertyListLimits{}.fileBytes);
  return bytes ? readStringTable(*bytes) : std::nullopt;
}

std::optional<PropertyDictionary> readStringTableOf(const BundleFolder& bundle,
                                                    const std::vector<Text>& languages, const Text& table) {
  for (const Text& language : languages) {
    for (const Text& folder : languageFolderNames(language)) {
      if (auto found = readStringTableOf(bundle, folder, table)) return found;
    }
  }
  return std::nullopt;
}

}  // namespace halvorn
