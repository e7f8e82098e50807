// Sounds and devices of the sound module. Nothing is loaded until a sound is made or a device asked for; a
// module that cannot be loaded is a machine without sound.
#pragma once

#include <memory>

#include "Platform/running/Clock.h"
#include "Platform/running/Workers.h"
#include "Platform/sound/AudioDevices.h"
#include "Platform/sound/Sounds.h"

namespace halvorn {

class LoadedSounds : public Sounds, public AudioDevices {
 public:
  // Clock and workers live longer than this object, and this object longer than its sounds.
  LoadedSounds(const Text& modulePath, const Clock& clock, Workers& workers, const Text& applicationName);
  ~LoadedSounds() override;

  Result soundWithData(const Text& path, const std::string& data) override;
  void endAll() override;

  std::optional<AudioDeviceID> defaultSystemOutputDevice() const override;
  std::optional<std::vector<AudioDeviceID>> devices() const override;
  OptionalText name(AudioDeviceID device) const override;
  OptionalText manufacturer(AudioDeviceID device) const override;
  OptionalText uid(AudioDeviceID device, AudioScope scope) const override;

 private:
  struct Parts;
  std::unique_ptr<Parts> parts_;
};

}  // namespace halvorn
