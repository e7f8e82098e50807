#include "Platform/sound/mac/MacAudioDevices.h"

#import <CoreAudio/CoreAudio.h>

#include <algorithm>

#include "Platform/running/mac/Conversions.h"
#include "Platform/running/mac/Held.h"
#include "Platform/sound/mac/MacSounds.h"

namespace halvorn {
namespace {

constexpr UInt32 kMainElement = 0;
constexpr UInt32 kLongestName = 64;

AudioObjectPropertyAddress address(UInt32 selector, UInt32 scope = kAudioObjectPropertyScopeGlobal) {
  return {selector, scope, kMainElement};
}

// The size that came, or nullopt.
std::optional<UInt32> read(AudioObjectID object, const AudioObjectPropertyAddress& asked, UInt32 size,
                           void* data) {
  const OSStatus status = AudioObjectGetPropertyData(object, &asked, 0, nullptr, &size, data);
  return status == noErr ? std::optional(size) : std::nullopt;
}

}  // namespace

std::optional<AudioDeviceID> MacAudioDevices::defaultSystemOutputDevice() const {
  AudioObjectID device = kAudioObjectUnknown;
  if (sounds_.hasEnded()) return std::nullopt;
  if (!read(kAudioObjectSystemObject, address(kAudioHardwarePropertyDefaultSystemOutputDevice),
            sizeof(device), &device)) {
    return std::nullopt;
  }
  return device != kAudioObjectUnknown ? std::optional<AudioDeviceID>(device) : std::nullopt;
}

std::optional<std::vector<AudioDeviceID>> MacAudioDevices::devices() const {
  const auto asked = address(kAudioHardwarePropertyDevices);
  UInt32 size = 0;
  if (sounds_.hasEnded()) return std::nullopt;
  if (AudioObjectGetPropertyDataSize(kAudioObjectSystemObject, &asked, 0, nullptr, &size) != noErr)
    return std::nullopt;
  std::vector<AudioDeviceID> devices(size / sizeof(AudioObjectID));
  const auto came = read(kAudioObjectSystemObject, asked,
                         static_cast<UInt32>(devices.size() * sizeof(AudioObjectID)), devices.data());
  if (!came) return std::nullopt;
  // A device may have gone between the two questions.
  devices.resize(std::min<std::size_t>(devices.size(), *came / sizeof(AudioObjectID)));
  return devices;
}

OptionalText MacAudioDevices::textProperty(AudioDeviceID device, std::uint32_t selector) const {
  char bytes[kLongestName + 1] = {};
  if (sounds_.hasEnded() || !read(device, address(selector), kLongestName, bytes)) return std::nullopt;
  return Text(bytes);
}

OptionalText MacAudioDevices::name(AudioDeviceID device) const {
  return textProperty(device, kAudioDevicePropertyDeviceName);
}

OptionalText MacAudioDevices::manufacturer(AudioDeviceID device) const {
  return textProperty(device, kAudioDevicePropertyDeviceManufacturer);
}

OptionalText MacAudioDevices::uid(AudioDeviceID device, AudioScope scope) const {
  if (sounds_.hasEnded()) return std::nullopt;
  return answered(OptionalText(), [&]() -> OptionalText {
    const UInt32 side =
        scope == AudioScope::Output ? kAudioObjectPropertyScopeOutput : kAudioObjectPropertyScopeGlobal;
    Held<CFStringRef> uid;
    if (!read(device, address(kAudioDevicePropertyDeviceUID, side), sizeof(CFStringRef), uid.out()))
      return std::nullopt;
    return textOf((NSString*)uid.get());
  });
}

}  // namespace halvorn
