// Notices that nobody hears.
#pragma once

#include "Platform/files/FileChangeNotices.h"

namespace halvorn {

class NullFileChangeNotices : public FileChangeNotices {
 public:
  void noteFileSystemChanged(const Text&) override {}
};

}  // namespace halvorn
