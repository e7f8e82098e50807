// Files that are open for writing, as POSIX has them.
#pragma once

#include "Platform/files/FileHandles.h"

namespace halvorn {

class PosixFileHandles : public FileHandles {
 public:
  [[nodiscard]] std::unique_ptr<FileHandle> openForWriting(const Text& path) const override;
};

}  // namespace halvorn
