// What the sound module hands out: sounds and devices of one server.
#pragma once

namespace halvorn {

class AudioDevices;
class Clock;
class Sounds;
class Workers;

class SoundModule {
 public:
  virtual ~SoundModule() = default;
  [[nodiscard]] virtual Sounds& sounds() = 0;
  [[nodiscard]] virtual AudioDevices& devices() = 0;
};

inline constexpr char kSoundModuleFunction[] = "halvornMakeSoundModule";
// The caller owns the answer. The name is how mixers show the program; clock and workers live longer.
using MakeSoundModule = SoundModule*(const Clock& clock, Workers& workers, const char* applicationName);

}  // namespace halvorn
