// No Applications folders, and the root for a home.
#pragma once

#include "Platform/files/SearchPaths.h"

namespace halvorn {

class NullSearchPaths : public SearchPaths {
 public:
  Text homeFolder() const override { return "/"; }
  std::vector<Text> localApplicationsFolders() const override { return {}; }
  std::vector<Text> userApplicationsFolders() const override { return {}; }
};

}  // namespace halvorn
