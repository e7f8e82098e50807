// File systems by the files on them.
#pragma once

#include "Core/Text.h"

namespace halvorn {

struct FileSystemAnswer {
  int status = 0;  // 0, or the negative answer of the system's call
  Text typeName;   // "ext4", as the system names it; "" when it does not
};

class FileSystemInfo {
 public:
  virtual ~FileSystemInfo() = default;
  // The file system that holds the item at the path; links are followed. Thread: any.
  [[nodiscard]] virtual FileSystemAnswer statusOf(const Text& path) const = 0;
};

}  // namespace halvorn
