// Tells the workspace that something changed.
#pragma once

#include "Platform/files/FileChangeNotices.h"

namespace halvorn {

class MacFileChangeNotices : public FileChangeNotices {
 public:
  void noteFileSystemChanged(const Text& path) override;
};

}  // namespace halvorn
