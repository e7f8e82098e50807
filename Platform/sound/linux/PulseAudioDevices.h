// The sinks of the sound server. A device's uid is the name of its sink.
#pragma once

#include "Platform/sound/AudioDevices.h"
#include "Platform/sound/linux/PulseServer.h"

namespace halvorn {

class PulseAudioDevices : public AudioDevices {
 public:
  // The server lives longer than this object.
  explicit PulseAudioDevices(PulseServer& server) : server_(server) {}

  // The sink that the person chose for event sounds while it is there, else the default sink.
  std::optional<AudioDeviceID> defaultSystemOutputDevice() const override;
  std::optional<std::vector<AudioDeviceID>> devices() const override;
  // The sink's description, as mixers show it.
  OptionalText name(AudioDeviceID device) const override;
  // The hardware's vendor; for devices without one, the driver that makes them.
  OptionalText manufacturer(AudioDeviceID device) const override;
  OptionalText uid(AudioDeviceID device, AudioScope scope) const override;

  enum class Presence { Present, Absent, Unknown };  // Unknown: the server did not say
  [[nodiscard]] static Presence presenceOf(PulseServer& server, const Text& uid);

 private:
  PulseServer& server_;
};

}  // namespace halvorn
