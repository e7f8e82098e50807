// Files that are open for writing.
//
// Thread: any; one handle on one thread at a time.
#pragma once

#include <memory>
#include <string_view>

#include "Core/Text.h"

namespace halvorn {

// Closes its file when it ends.
class FileHandle {
 public:
  virtual ~FileHandle() = default;
  // False for what has no end: pipes, terminals.
  [[nodiscard]] virtual bool seekToEnd() = 0;
  // All of the bytes; false when any could not be written.
  [[nodiscard]] virtual bool write(std::string_view bytes) = 0;
};

class FileHandles {
 public:
  virtual ~FileHandles() = default;
  // Null when there is no such file, or it is a folder, or may not be written. Never
  // waits for the other end of a pipe.
  [[nodiscard]] virtual std::unique_ptr<FileHandle> openForWriting(const Text& path) const = 0;
};

}  // namespace halvorn
