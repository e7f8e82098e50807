// The file in a bundle that holds its icon.
#pragma once

#include "Core/Text.h"

namespace halvorn {

class Bundles;

// The one that CFBundleIconFile names, with or without its extension; nullopt
// when there is none. Thread: any.
[[nodiscard]] OptionalText bundleIconFile(const Bundles& bundles, const Text& bundlePath);

}  // namespace halvorn
