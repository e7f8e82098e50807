// Tells the desktop that something changed at a path, for desktops that do not watch by themselves.
#pragma once

#include "Core/Text.h"

namespace halvorn {

class FileChangeNotices {
 public:
  virtual ~FileChangeNotices() = default;
  // Thread: any. Never waits, cannot fail.
  virtual void noteFileSystemChanged(const Text& path) = 0;
};

}  // namespace halvorn
