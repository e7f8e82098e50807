#include "Platform/bundles/linux/LinuxDefaults.h"

#include "Platform/bundles/linux/OldPropertyList.h"
#include "Platform/bundles/linux/PropertyListReader.h"
#include "Platform/files/posix/BoundedFile.h"
#include "Platform/session/linux/XdgFolders.h"

namespace halvorn {
namespace {

constexpr char kGlobalDomain[] = ".GlobalPreferences";

PropertyDictionary readArguments(const std::vector<Text>& arguments) {
  PropertyDictionary values;
  for (std::size_t i = 1; i + 1 < arguments.size(); ++i) {
    if (!arguments[i].hasPrefix("-") || arguments[i + 1].hasPrefix("-")) continue;
    const Text& value = arguments[i + 1];
    const auto list = readOldPropertyList(value, PropertyListLimits{});
    values.insert_or_assign(arguments[i].substring(1), list ? *list : PropertyValue(value));
  }
  return values;
}

std::optional<PropertyValue> find(const PropertyDictionary& values, const Text& key) {
  const auto found = values.find(key);
  return found == values.end() ? std::nullopt : std::optional(found->second);
}

// A file name, and none of the hidden ones, the global domain's apart.
bool isDomain(const Text& domain) {
  if (domain == Text(kGlobalDomain)) return true;
  return !domain.isEmpty() && !domain.hasPrefix(".") && domain.find(u'/') == Text::npos;
}

}  // namespace

LinuxDefaults::LinuxDefaults(const XdgFolders& folders, const Text& domain,
                             const std::vector<Text>& arguments)
    : folder_(folders.configHome()), domain_(domain), arguments_(readArguments(arguments)) {}

std::optional<PropertyValue> LinuxDefaults::objectForKey(const Text& key) const {
  auto value = find(arguments_, key);
  if (!value) value = objectForKey(key, domain_);
  return value ? value : objectForKey(key, kGlobalDomain);
}

std::optional<PropertyValue> LinuxDefaults::objectForKey(const Text& key, const Text& domain) const {
  const Text name = domain == Text("NSGlobalDomain") ? Text(kGlobalDomain) : domain;
  if (!isDomain(name)) return std::nullopt;
  const auto values = readPropertyListFile(folder_ + "/" + name.bytes() + ".plist");
  return values ? find(*values, key) : std::nullopt;
}

}  // namespace halvorn
