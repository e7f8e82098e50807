#include "Platform/bundles/linux/BundleIcon.h"

#include "Core/PropertyValue.h"
#include "Platform/bundles/Bundles.h"

namespace halvorn {

OptionalText bundleIconFile(const Bundles& bundles, const Text& bundlePath) {
  const auto info = bundles.infoDictionary(bundlePath);
  const OptionalText name = info ? textForKey(*info, "CFBundleIconFile") : std::nullopt;
  if (!name || name->isEmpty()) return std::nullopt;
  for (const char* type : {"icns", "", "png", "tiff", "tif"}) {
    if (OptionalText path = bundles.pathForResource(bundlePath, *name, type)) return path;
  }
  return std::nullopt;
}

}  // namespace halvorn
