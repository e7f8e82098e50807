// Nothing is known of any file system.
#pragma once

#include "Platform/files/FileSystemInfo.h"

namespace halvorn {

class NullFileSystemInfo : public FileSystemInfo {
 public:
  FileSystemAnswer statusOf(const Text&) const override { return {-1, ""}; }
};

}  // namespace halvorn
