// Removes an item with everything in it, for good.
#pragma once

#include "Platform/files/posix/copy/ItemPlace.h"

namespace halvorn {

// Links are removed, never followed; other file systems mounted inside are left alone.
// Fails: false when anything is left; everything that could be removed is gone then, too.
[[nodiscard]] bool removeTree(const ItemPlace& place);

}  // namespace halvorn
