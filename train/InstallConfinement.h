// The walls within which the tool works.
// Why: docs/decisions/032-the-tool-confines-itself.md
#pragma once

#include <functional>
#include <optional>
#include <vector>

#include "Core/Text.h"
#include "Platform/files/FileFailure.h"
#include "Platform/running/posix/FileDescriptor.h"
#include "train/InstallRights.h"

namespace halvorn {

struct InstallPaths {
  Text source;
  Text destination;
  OptionalText wrapper = std::nullopt;
};

// The folders at and below which things from that folder are put into the Trash.
using ReachOfTrash = std::function<std::vector<FileDescriptor>(int folder)>;

// To be called with administrator rights, by the only thread, after the last question about an account. From
// then on the process works on files alone, and opens and changes none but those of the source and the
// wrapper (to read), of the destination's folder and of the Trash. A wall that the system does not have is
// left out. Fails: why, when one could not be put up, or the source not be reached; nothing may then be
// installed.
[[nodiscard]] std::optional<FileFailure> confineTo(const InstallPaths& paths, const InstallRights& rights,
                                                   const ReachOfTrash& trash);

}  // namespace halvorn
