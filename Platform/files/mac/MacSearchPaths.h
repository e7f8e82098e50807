// Folders of the system and of the person, as Foundation names them.
#pragma once

#include "Platform/files/SearchPaths.h"

namespace halvorn {

class MacSearchPaths : public SearchPaths {
 public:
  Text homeFolder() const override;
  OptionalText homeFolderOf(const Text& account) const override;
  std::vector<Text> localApplicationsFolders() const override;
  std::vector<Text> userApplicationsFolders() const override;
  std::vector<Text> volumeFolders() const override;
  // None beyond those that are searched everywhere.
  std::vector<Text> soundFolders() const override;
};

}  // namespace halvorn
