// A machine without sound.
#pragma once

#include "Platform/sound/AudioDevices.h"
#include "Platform/sound/Sounds.h"

namespace halvorn {

// Every sound is refused.
class NullSounds : public Sounds {
 public:
  Result soundWithData(const Text& /*path*/, const std::string& /*data*/) override {
    return {nullptr, "this system plays no sounds"};
  }
  void endAll() override {}
};

// No device is known.
class NullAudioDevices : public AudioDevices {
 public:
  std::optional<AudioDeviceID> defaultSystemOutputDevice() const override { return std::nullopt; }
  std::optional<std::vector<AudioDeviceID>> devices() const override { return std::nullopt; }
  OptionalText name(AudioDeviceID /*device*/) const override { return std::nullopt; }
  OptionalText manufacturer(AudioDeviceID /*device*/) const override { return std::nullopt; }
  OptionalText uid(AudioDeviceID /*device*/, AudioScope /*scope*/) const override { return std::nullopt; }
};

}  // namespace halvorn
