#include "Platform/sound/linux/SoundModule.h"

#include "Platform/sound/linux/PulseAudioDevices.h"
#include "Platform/sound/linux/PulseServer.h"
#include "Platform/sound/linux/PulseSounds.h"

namespace halvorn {
namespace {

class PulseModule : public SoundModule {
 public:
  PulseModule(const Clock& clock, Workers& workers, const char* applicationName)
      : server_(clock, applicationName), devices_(server_), sounds_(server_, workers) {}

  Sounds& sounds() override { return sounds_; }
  AudioDevices& devices() override { return devices_; }

 private:
  PulseServer server_;
  PulseAudioDevices devices_;
  PulseSounds sounds_;
};

}  // namespace
}  // namespace halvorn

extern "C" [[gnu::visibility("default")]] halvorn::SoundModule* halvornMakeSoundModule(
    const halvorn::Clock& clock, halvorn::Workers& workers, const char* applicationName) {
  return new halvorn::PulseModule(clock, workers, applicationName);
}
