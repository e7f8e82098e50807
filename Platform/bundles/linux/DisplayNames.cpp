#include "Platform/bundles/linux/DisplayNames.h"

#include "Core/Paths.h"
#include "Platform/bundles/Bundles.h"
#include "Platform/bundles/linux/BundleFolder.h"
#include "Platform/bundles/linux/LinuxLocalizedStrings.h"
#include "Platform/bundles/linux/launching/DesktopEntry.h"

namespace halvorn {
namespace {

constexpr const char* kNameKeys[] = {"CFBundleDisplayName", "CFBundleName", "ApplicationName"};

// A name that could be a file's: without line ends or slashes, which would make a path of it.
bool isUsableName(const Text& name) {
  return !name.trimmed().isEmpty() && name.units().find_first_of(std::u16string_view(
                                          u"/\n\r\0\u2028\u2029", 6)) == std::u16string_view::npos;
}

OptionalText localizedBundleName(const BundleFolder& bundle, const Bundles& bundles,
                                 const std::vector<Text>& languages) {
  const auto info = bundles.infoDictionary(bundle.path());
  if (info && !hasOwnFileName(bundle.path(), *info)) return std::nullopt;
  const auto table = readStringTableOf(bundle, languages, "InfoPlist");
  return table ? bundleNameIn(*table) : std::nullopt;
}

}  // namespace

OptionalText bundleNameIn(const PropertyDictionary& table) {
  for (const char* const key : kNameKeys) {
    const OptionalText name = textForKey(table, key);
    if (name && isUsableName(*name)) return name->trimmed();
  }
  return std::nullopt;
}

bool hasOwnFileName(const Text& bundlePath, const PropertyDictionary& info) {
  const OptionalText name = bundleNameIn(info);
  return !name || *name == Paths::lastComponent(Paths::deletingExtension(bundlePath));
}

Text displayNameOf(const Text& path, const Bundles& bundles, const std::vector<Text>& languages) {
  const Text file = Paths::lastComponent(path);
  const auto bundle = BundleFolder::at(path);
  if (!bundle) return file;
  if (Paths::extension(file) == Text("app")) {
    return localizedBundleName(*bundle, bundles, languages).value_or(bundle->name());
  }
  const auto entry = DesktopEntry::read(Paths::appending(path, ".directory").bytes());
  const auto name = entry ? entry->localizedValue("Name", languages) : std::nullopt;
  return name && isUsableName(Text(*name)) ? Text(*name).trimmed() : file;
}

}  // namespace halvorn
