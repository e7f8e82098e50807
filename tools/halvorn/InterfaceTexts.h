// The texts that the installer's window begins with, out of its description.
#pragma once

#include <map>
#include <string>

#include "Platform/bundles/LocalizedStrings.h"

namespace halvorn {

// The "title" or "text" of each element by its id, localized; empty when the description cannot be read.
[[nodiscard]] std::map<std::string, Text> interfaceTexts(const std::string& description,
                                                         const LocalizedStrings& strings);

}  // namespace halvorn
