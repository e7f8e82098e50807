// Sound.
#include <unistd.h>

#include "KTStuff/CocoaExtensions/SoundExtensions.h"
#include "Platform/sound/mac/MacAudioDevices.h"
#include "Platform/sound/mac/MacSounds.h"
#include "System/Parts.h"

namespace halvorn {
namespace {

struct SoundPart {
  explicit SoundPart(KTSystem& system)
      : extensions({.sounds = sounds,
                    .devices = devices,
                    .searchPaths = system.searchPaths(),
                    .files = system.files(),
                    .bundles = system.bundles(),
                    .defaults = system.defaults(),
                    .versions = system.versions(),
                    .workers = system.workers(),
                    .clock = system.clock(),
                    .log = system.log(),
                    .userID = ::getuid()}) {
    system.parts().whenFinishing([this] { sounds.endAll(); });
  }

  MacSounds sounds;
  const MacAudioDevices devices{sounds};
  SoundExtensions extensions;
};

}  // namespace

SoundExtensions& KTSystem::sound() { return parts_->of<SoundPart>().extensions; }
const AudioDevices& KTSystem::audioDevices() { return parts_->of<SoundPart>().devices; }

}  // namespace halvorn
