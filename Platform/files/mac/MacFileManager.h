// The file system of macOS: asked by the calls that every such system has, and copied by the system's own engine.
// Why: docs/macos.md
#pragma once

#include "Platform/files/posix/PosixFileManager.h"

namespace halvorn {

// For a process with the rights of its person; what has more keeps to PosixFileManager, which holds what it works on.
class MacFileManager : public PosixFileManager {
 public:
  // By copyfile(3): clones where the file system can, with all metadata. Several names of one file become files of their
  // own, which share their blocks where they are clones.
  std::optional<FileFailure> copyItem(const Text& from, const Text& to) override;
};

}  // namespace halvorn
