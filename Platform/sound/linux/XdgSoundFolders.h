// The sound folders of Linux desktops: the person's, $XDG_DATA_HOME/sounds, then the machine's,
// /usr/share/sounds.
#pragma once

#include "Core/Paths.h"
#include "Platform/sound/SoundFolders.h"

namespace halvorn {

class XdgSoundFolders : public SoundFolders {
 public:
  // The folder of the person's data, as XdgFolders::dataHome() has it.
  explicit XdgSoundFolders(const Text& dataHome) : dataHome_(dataHome) {}

  std::vector<Text> additionalSoundFolders() const override {
    return {Paths::appending(dataHome_, "sounds"), "/usr/share/sounds"};
  }

 private:
  Text dataHome_;
};

}  // namespace halvorn
