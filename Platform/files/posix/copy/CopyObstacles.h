// What would keep a copy from its end and can be known before it begins.
#pragma once

#include <optional>
#include <string>

#include "Platform/files/FileFailure.h"
#include "Platform/files/posix/copy/CopyContext.h"
#include "Platform/files/posix/copy/ItemPlace.h"

namespace halvorn {

// Too few descriptors are left to copy at all; the original cannot be looked at; or it has a file in it that
// is larger than this process may write. nullopt: nothing is known that is in the way. `to` is the path of the
// copy, to tell.
[[nodiscard]] std::optional<FileFailure> obstacleToCopy(const ItemPlace& from, const std::string& to,
                                                        const CopyRules& rules);

}  // namespace halvorn
