// A product as the installer will read it.
#pragma once

#include "Core/PropertyValue.h"
#include "tools/halvorn/InstallerSteps.h"

namespace halvorn {

// After begin() with the bundle as "sourcePath". As the schema has it, without the status.
[[nodiscard]] PropertyDictionary checkOf(InstallerSteps& steps, const Text& bundle);

}  // namespace halvorn
