// The devices that sound comes out of, as Core Audio lists them.
#pragma once

#include "Platform/sound/AudioDevices.h"

namespace halvorn {

class MacSounds;

class MacAudioDevices : public AudioDevices {
 public:
  // Knows no device any more once the sounds have all been ended. They must outlive it.
  explicit MacAudioDevices(const MacSounds& sounds) : sounds_(sounds) {}
  [[nodiscard]] std::optional<AudioDeviceID> defaultSystemOutputDevice() const override;
  [[nodiscard]] std::optional<std::vector<AudioDeviceID>> devices() const override;
  [[nodiscard]] OptionalText name(AudioDeviceID device) const override;
  [[nodiscard]] OptionalText manufacturer(AudioDeviceID device) const override;
  [[nodiscard]] OptionalText uid(AudioDeviceID device, AudioScope scope) const override;

 private:
  [[nodiscard]] OptionalText textProperty(AudioDeviceID device, std::uint32_t selector) const;

  const MacSounds& sounds_;
};

}  // namespace halvorn
