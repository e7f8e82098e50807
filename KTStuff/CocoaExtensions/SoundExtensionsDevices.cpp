#include "Core/Format.h"
#include "KTStuff/CocoaExtensions/SoundExtensions.h"

namespace halvorn {
namespace {

// Names of devices are cut to what fits a buffer of 64 bytes with its end, whole characters only.
constexpr std::size_t kDeviceNameLimit = 63;

Text cutDeviceName(const Text& name) {
  std::string bytes = name.bytes();
  if (bytes.size() <= kDeviceNameLimit) return name;
  std::size_t end = kDeviceNameLimit;
  const auto continuesCharacter = [&](std::size_t at) {
    return (static_cast<unsigned char>(bytes[at]) & 0xC0U) == 0x80U;
  };
  while (end > 0 && continuesCharacter(end)) --end;
  bytes.resize(end);
  return bytes;
}

const PropertyValue* find(const PropertyDictionary& dictionary, const Text& key) {
  const auto found = dictionary.find(key);
  return found == dictionary.end() ? nullptr : &found->second;
}

const PropertyDictionary* findDictionary(const PropertyDictionary& dictionary, const Text& key) {
  const PropertyValue* value = find(dictionary, key);
  return value ? value->dictionary() : nullptr;
}

OptionalText firstPreferredOutput(const PropertyDictionary& settings) {
  const PropertyDictionary* preferred = findDictionary(settings, "preferred devices");
  const PropertyValue* outputs = preferred ? find(*preferred, "system output") : nullptr;
  const PropertyArray* list = outputs ? outputs->array() : nullptr;
  const PropertyDictionary* first = list && !list->empty() ? list->front().dictionary() : nullptr;
  return first ? textForKey(*first, "uid") : std::nullopt;
}

OptionalText currentOutputUnder(const PropertyDictionary& settings, const Text& user) {
  const PropertyDictionary* entry = findDictionary(settings, user);
  return entry ? textForKey(*entry, "current default system output device") : std::nullopt;
}

}  // namespace

OptionalText SoundExtensions::systemAudioDeviceID() const { return outputDeviceUID(AudioScope::Output); }

OptionalText SoundExtensions::_alertSoundAlertDeviceIdentifier() const {
  return outputDeviceUID(AudioScope::Global);
}

OptionalText SoundExtensions::outputDeviceUID(AudioScope scope) const {
  const auto device = services_.devices.defaultSystemOutputDevice();
  return device ? services_.devices.uid(*device, scope) : std::nullopt;
}

OptionalText SoundExtensions::soundEffectDeviceID() const {
  const auto settings =
      services_.bundles.dictionaryAtPath("/Library/Preferences/Audio/com.apple.audio.SystemSettings.plist");
  if (!settings) return std::nullopt;
  if (services_.versions.yosemiteOrNewer()) return firstPreferredOutput(*settings);
  if (OptionalText own = currentOutputUnder(*settings, format("%d", services_.userID))) return own;
  return currentOutputUnder(*settings, "0");
}

void SoundExtensions::listAudioDevices() const {
  const auto devices = services_.devices.devices();
  if (!devices) return;
  for (const AudioDeviceID device : *devices) {
    const OptionalText name = services_.devices.name(device);
    const OptionalText manufacturer = name ? services_.devices.manufacturer(device) : std::nullopt;
    const OptionalText uid = manufacturer ? services_.devices.uid(device, AudioScope::Global) : std::nullopt;
    if (uid)
      services_.log("   device %s by %s id %@", cutDeviceName(*name), cutDeviceName(*manufacturer), *uid);
  }
}

}  // namespace halvorn
