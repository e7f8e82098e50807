// For desktops that watch the file system by themselves: there is nothing to tell.
#pragma once

#include "Platform/files/FileChangeNotices.h"

namespace halvorn {

class SilentFileChangeNotices : public FileChangeNotices {
 public:
  void noteFileSystemChanged(const Text&) override {}
};

}  // namespace halvorn
