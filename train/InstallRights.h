// With whose rights the tool works.
// Why: docs/decisions/015-the-administrators-tool.md
#pragma once

#include <optional>

#include "Platform/files/posix/PosixFileManager.h"
#include "Platform/rights/posix/Person.h"

namespace halvorn {

struct InstallRights {
  FileRules files = {};
  Person trashOwner = {};
};

// Started by an ordinary user: that user's rights for everything. With administrator rights: links in the way
// of what is written are refused, and what is written belongs to the administrator; when somebody asked for
// these rights, that person's rights decide what can be read, and the Trash is that person's. Fails: nullopt
// when somebody asked who has no account here.
[[nodiscard]] std::optional<InstallRights> installRights();

}  // namespace halvorn
