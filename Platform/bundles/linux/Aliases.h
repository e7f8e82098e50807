// Links, and the files of the type "Link" that desktops make, as aliases.
#pragma once

#include "Core/Text.h"

namespace halvorn {

// Where the alias at the path leads in the end; nullopt when it is none or leads nowhere. Entries that lead to
// a web page or to another computer lead nowhere.
[[nodiscard]] OptionalText targetOfAlias(const Text& path);

}  // namespace halvorn
