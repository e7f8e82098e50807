// The texts of a bundle's Localizable.strings in the person's language.
#pragma once

#include <vector>

#include "Core/PropertyValue.h"
#include "Platform/bundles/LocalizedStrings.h"

namespace halvorn {

class BundleFolder;

class LinuxLocalizedStrings : public LocalizedStrings {
 public:
  // Reads the table of the first language that has one which can be read, else the bundle's own language.
  LinuxLocalizedStrings(const Text& bundlePath, const std::vector<Text>& languages);

  Text localized(const Text& key) const override;

 private:
  PropertyDictionary table_;
};

// `table`.strings in that folder of the bundle ("de", without ".lproj"); nullopt when missing or unreadable.
[[nodiscard]] std::optional<PropertyDictionary> readStringTableOf(const BundleFolder& bundle,
                                                                  const Text& languageFolder,
                                                                  const Text& table);
// That of the first of the languages which has one.
[[nodiscard]] std::optional<PropertyDictionary> readStringTableOf(const BundleFolder& bundle,
                                                                  const std::vector<Text>& languages,
                                                                  const Text& table);

}  // namespace halvorn
