// What the program says of itself without a window.
#pragma once

#include <vector>

#include "Core/Text.h"

namespace halvorn {

class Bundles;

// The answer to "--help" or "--version" when that is all that stands on the command line behind the program's
// path: lines with a line break each; nullopt when the command line asks for an installation. The version is that
// of the main bundle. Thread: any.
[[nodiscard]] OptionalText commandLineAnswer(const std::vector<Text>& argumentList, const Bundles& bundles);

}  // namespace halvorn
