// The sound folders of Linux desktops: $XDG_DATA_HOME/sounds, then /usr/share/sounds.
#pragma once

#include "Platform/SearchPaths.h"
#include "Platform/SoundFolders.h"

namespace halvorn {

class XdgSoundFolders : public SoundFolders {
 public:
  // Reads the environment now and not later.
  explicit XdgSoundFolders(const SearchPaths& searchPaths);

  std::vector<Text> additionalSoundFolders() const override;

 private:
  Text dataHome_;
};

}  // namespace halvorn
