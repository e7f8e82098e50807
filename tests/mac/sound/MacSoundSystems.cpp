// The adapters of macOS, on devices that a test makes up.
#include <gtest/gtest.h>

#include "Platform/sound/mac/MacAudioDevices.h"
#include "Platform/sound/mac/MacSounds.h"
#include "tests/mac/MacLoop.h"
#include "tests/mac/frameworks/FakeMac.h"
#include "tests/sound/contract/SoundSystems.h"

namespace halvorn {
namespace {

class MacSystem : public SoundSystem {
 public:
  MacSystem() { fakemac::reset(); }
  ~MacSystem() override { EXPECT_EQ(fakemac::liveObjects(), 0); }
  Sounds& sounds() override { return sounds_; }
  AudioDevices& devices() override { return devices_; }
  void loseServer() override { fakemac::state().hasAudio = false; }
  bool waitForEnd(Sound& sound) override {
    fakemac::finishSounds();
    return !sound.isPlaying();
  }

 private:
  MacPool pool_;
  MacSounds sounds_;
  MacAudioDevices devices_{sounds_};
};

std::optional<std::string> nothing() { return std::nullopt; }
std::unique_ptr<SoundSystem> makeMacSystem() { return std::make_unique<MacSystem>(); }

}  // namespace

const std::vector<NamedSoundSystem>& soundSystems() {
  static const std::vector<NamedSoundSystem> all = {{"Mac", nothing, makeMacSystem}};
  return all;
}

}  // namespace halvorn
