// Sound. Nothing is loaded or connected before a sound is made or a device asked for.
#include <unistd.h>

#include "KTStuff/CocoaExtensions/SoundExtensions.h"
#include "Platform/sound/linux/LoadedSounds.h"
#include "System/linux/Places.h"

namespace halvorn {
namespace {

struct SoundPart {
  explicit SoundPart(KTSystem& system)
      : ground(system.parts().of<Ground>()),
        sounds(ground.modulePath("HalvornSound.so"), ground.clock, system.workers(), ground.programName),
        extensions({.sounds = sounds,
                    .devices = sounds,
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

  const Ground& ground;
  LoadedSounds sounds;
  SoundExtensions extensions;
};

}  // namespace

SoundExtensions& KTSystem::sound() { return parts_->of<SoundPart>().extensions; }
const AudioDevices& KTSystem::audioDevices() { return parts_->of<SoundPart>().sounds; }

}  // namespace halvorn
