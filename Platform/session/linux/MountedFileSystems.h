// File systems by the mount table.
#pragma once

#include <string>

#include "Platform/session/SystemFacts.h"

namespace halvorn {

class MountedFileSystems {
 public:
  explicit MountedFileSystems(const std::string& procFolder = "/proc/self");

  // The type is the one the volume was mounted with, so that ext4 is not taken for
  // ext3 nor a FUSE volume for another.
  [[nodiscard]] FileSystemAnswer statusOf(const Text& path) const;

 private:
  std::string procFolder_;
};

}  // namespace halvorn
