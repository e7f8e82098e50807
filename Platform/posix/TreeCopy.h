// Copies an item with everything in it.
#pragma once

#include "Platform/posix/FileMetadata.h"
#include "Platform/posix/ItemPlace.h"
#include "Platform/posix/Person.h"

namespace halvorn {

struct CopyRules {
  const Person* readAs = nullptr;  // whose rights open the originals; null: this process' own
  Ownership ownership = Ownership::Kept;
};

// Copies the item at `from` to `to`, where nothing may be. Links are copied, never followed; pipes, sockets
// and device nodes are made anew and never opened. Fails: false when any part could not be copied; what was
// copied stays.
[[nodiscard]] bool copyTree(const ItemPlace& from, const ItemPlace& to, const CopyRules& rules);

}  // namespace halvorn
