// Files that others wrote: read whole, up to a limit, never waiting on a pipe or a device.
#pragma once

#include <QByteArray>
#include <optional>

#include "Core/Text.h"

namespace halvorn {

// The bytes of the regular file (links are followed); nullopt when it is missing, unreadable, something else
// or longer than the limit. Thread: any.
[[nodiscard]] std::optional<QByteArray> readBoundedFile(const Text& path, qsizetype limit);

}  // namespace halvorn
