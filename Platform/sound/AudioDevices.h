// The devices that sound comes out of.
//
// Thread: any. Asks the sound server each time and waits for it, some seconds at most when it does not
// answer. Fails: nullopt where there is no server, no such device or no such property.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "Core/Text.h"

namespace halvorn {

// Good while the device is there; may be given to another one later.
using AudioDeviceID = std::uint32_t;

// Which side of a device a property is asked of.
enum class AudioScope { Global, Output };

class AudioDevices {
 public:
  virtual ~AudioDevices() = default;
  // The device that the person's alerts play on.
  [[nodiscard]] virtual std::optional<AudioDeviceID> defaultSystemOutputDevice() const = 0;
  // Every output device, in the system's order.
  [[nodiscard]] virtual std::optional<std::vector<AudioDeviceID>> devices() const = 0;

  [[nodiscard]] virtual OptionalText name(AudioDeviceID device) const = 0;          // as people read it
  [[nodiscard]] virtual OptionalText manufacturer(AudioDeviceID device) const = 0;  // of the device
  // The name that lasts: it means the same device after a restart.
  [[nodiscard]] virtual OptionalText uid(AudioDeviceID device, AudioScope scope) const = 0;
};

}  // namespace halvorn
