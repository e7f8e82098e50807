#include "Platform/linux/audio/XdgSoundFolders.h"

#include <cstdlib>

#include "Core/Paths.h"

namespace halvorn {

XdgSoundFolders::XdgSoundFolders(const SearchPaths& searchPaths) {
  const char* variable = std::getenv("XDG_DATA_HOME");
  const Text dataHome = variable ? Text(variable) : Text();
  // A relative path is to be ignored, as the rule for these variables has it.
  dataHome_ =
      Paths::isAbsolute(dataHome) ? dataHome : Paths::appending(searchPaths.homeFolder(), ".local/share");
}

std::vector<Text> XdgSoundFolders::additionalSoundFolders() const {
  return {Paths::appending(dataHome_, "sounds"), "/usr/share/sounds"};
}

}  // namespace halvorn
