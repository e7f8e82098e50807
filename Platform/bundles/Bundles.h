// Application bundles: their information dictionaries and resources.
//
// Nothing outside the bundle is read, whatever its files say; hostile, truncated or huge
// files count as missing. Thread: any.
#pragma once

#include <optional>
#include <vector>

#include "Core/PropertyValue.h"
#include "Core/Text.h"

namespace halvorn {

class Bundles {
 public:
  virtual ~Bundles() = default;

  // The folder of the bundle around this program; without one, the program's folder.
  [[nodiscard]] virtual Text mainBundlePath() const = 0;
  // The information dictionary of the bundle at the path; nullopt when there is none that can be read.
  [[nodiscard]] virtual std::optional<PropertyDictionary> infoDictionary(const Text& bundlePath) const = 0;
  // The path of the resource `name`.`type` (`name` alone for the empty type), the user's language first.
  [[nodiscard]] virtual OptionalText pathForResource(const Text& bundlePath, const Text& name,
                                                     const Text& type) const = 0;
  // The paths of everything in the bundle's top resource folder, of any type, in the order of its listing.
  [[nodiscard]] virtual std::vector<Text> resourcePaths(const Text& bundlePath) const = 0;
  // The program inside the bundle, whether or not it can run here; nullopt when the bundle names none.
  [[nodiscard]] virtual OptionalText executablePath(const Text& bundlePath) const = 0;
  // The dictionary in the property-list file, XML or binary, which need not lie in a bundle; nullopt when it
  // cannot be read or holds something else. Hostile, truncated or huge files count as missing. Thread: any.
  [[nodiscard]] virtual std::optional<PropertyDictionary> dictionaryAtPath(const Text& path) const = 0;
};

}  // namespace halvorn
