// Removes an item with everything in it, for good.
#pragma once

#include <optional>

#include "Platform/files/FileFailure.h"
#include "Platform/files/posix/copy/ItemPlace.h"

namespace halvorn {

// Links are removed, never followed; what is mounted inside is left alone.
// Fails: answers the first thing that could not be done; everything that could be removed is gone then, too.
[[nodiscard]] std::optional<FileFailure> removeTree(const ItemPlace& place);

}  // namespace halvorn
