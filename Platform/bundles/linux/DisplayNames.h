// The names people see in the file browser.
#pragma once

#include <vector>

#include "Core/PropertyValue.h"
#include "Core/Text.h"

namespace halvorn {

class Bundles;

// A bundle's localized name, else its file name without ".app"; a folder's name out of its ".directory" file;
// else the file name. A bundle that was renamed keeps the name it was given.
[[nodiscard]] Text displayNameOf(const Text& path, const Bundles& bundles,
                                 const std::vector<Text>& languages);

// The name a table of a bundle's names (InfoPlist.strings) gives the bundle; nullopt
// when none. One line, never empty.
[[nodiscard]] OptionalText bundleNameIn(const PropertyDictionary& table);
// Whether the bundle still bears the file name that its information dictionary gives it.
[[nodiscard]] bool hasOwnFileName(const Text& bundlePath, const PropertyDictionary& info);

}  // namespace halvorn
