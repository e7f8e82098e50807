// Copies an item with everything in it.
// Why: docs/decisions/007-how-the-copy-is-made.md
#pragma once

#include <optional>

#include "Platform/files/FileFailure.h"
#include "Platform/files/posix/copy/CopyContext.h"
#include "Platform/files/posix/copy/ItemPlace.h"

namespace halvorn {

// Copies the item at `from` to `to`, where nothing may be. Links are copied, never followed; pipes, sockets
// and device nodes are made anew and never opened. Several threads work at it; all are done when it returns.
// Fails: answers the first thing that could not be done, and none when all was; what was copied stays.
[[nodiscard]] std::optional<FileFailure> copyTree(const ItemPlace& from, const ItemPlace& to,
                                                  const CopyRules& rules);

}  // namespace halvorn
