// Remembers the paths that were said to have changed.
#pragma once

#include <string>
#include <vector>

#include "Platform/files/FileChangeNotices.h"

namespace halvorn {

class FakeFileChangeNotices : public FileChangeNotices {
 public:
  void noteFileSystemChanged(const Text& path) override { paths.push_back(path.bytes()); }
  std::vector<std::string> paths;
};

}  // namespace halvorn
