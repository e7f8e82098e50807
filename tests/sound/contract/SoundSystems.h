// What the cases of the contract are asked of: two devices, and whatever plays on them.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Platform/sound/AudioDevices.h"
#include "Platform/sound/Sounds.h"

namespace halvorn {

class SoundSystem {
 public:
  virtual ~SoundSystem() = default;
  virtual Sounds& sounds() = 0;
  virtual AudioDevices& devices() = 0;
  virtual void loseServer() = 0;
  // Lets what plays come to its end; false when it does not.
  virtual bool waitForEnd(Sound& sound) = 0;
};

// One of those that this program was built with.
struct NamedSoundSystem {
  const char* name;
  std::optional<std::string> (*missing)();  // what the machine lacks for it
  std::unique_ptr<SoundSystem> (*make)();
};
[[nodiscard]] const std::vector<NamedSoundSystem>& soundSystems();

}  // namespace halvorn
