#include <algorithm>
#include <cmath>
#include <utility>

#include "KTStuff/CocoaExtensions/SoundExtensions.h"

namespace halvorn {
namespace {

// A device that has just been used needs no warm-up for that many seconds.
constexpr double kWarmSeconds = 25.0;
constexpr float kSilentVolume = 0.01F;

// The value as a number, texts by the number they begin with; nullopt for what no number can be made of.
std::optional<double> numberOf(const PropertyValue& value) {
  if (const double* real = value.real()) return std::isnan(*real) ? std::nullopt : std::optional(*real);
  if (const std::int64_t* integer = value.integer()) return static_cast<double>(*integer);
  if (const bool* boolean = value.boolean()) return *boolean ? 1.0 : 0.0;
  if (const Text* text = value.text()) return text->doubleValue();
  return std::nullopt;
}

double quarterOf(double beepVolume) {
  // KEEP: the third and fourth width are differences in double precision, the first two are written out.
  if (beepVolume <= 0.35) return 0.0;
  if (beepVolume <= 0.47) return (beepVolume - 0.35) / 0.12 * 0.25;
  if (beepVolume <= 0.61) return (beepVolume - 0.47) / 0.14 * 0.25 + 0.25;
  if (beepVolume <= 0.78) return (beepVolume - 0.61) / (0.78 - 0.61) * 0.25 + 0.5;
  return (beepVolume - 0.78) / (1.0 - 0.78) * 0.25 + 0.75;
}

}  // namespace

SoundExtensions::SoundExtensions(const SoundServices& services) : services_(services) {}

SoundExtensions::~SoundExtensions() {
  // First what the tasks may be waiting for, then the tasks: they use everything here.
  services_.sounds.endAll();
  gate_.close();
}

void SoundExtensions::playAsSoundEffect(Sound& sound) {
  const bool logs = services_.defaults.boolForKey("soundLog");
  if (logs) {
    services_.log("playAsSoundEffect: %@", sound.description());
    listAudioDevices();
  }
  const OptionalText device = systemAudioDeviceID();
  if (logs) services_.log("+SL: soundEffectID=%@", device);
  if (device) {
    if (logs) services_.log("+SL: setPlaybackDeviceIdentifier:%@", *device);
    if (const OptionalText refusal = sound.setPlaybackDeviceIdentifier(device)) {
      if (logs) services_.log("+SL: exception %@", *refusal);
      static_cast<void>(sound.setPlaybackDeviceIdentifier(std::nullopt));
    }
  }
  if (logs) services_.log("+SL: play self (%@)", sound.description());
  // Asking makes a platform that loads late load now, before the first sample is due.
  static_cast<void>(sound.duration());
  sound.play();
  setSoundDateNow();
}

float SoundExtensions::alertVolume() const {
  const Text key = "com.apple.sound.beep.volume";
  auto value = services_.defaults.objectForKey(key);
  if (!value) value = services_.defaults.objectForKey(key, "com.apple.systemsound");
  const auto beepVolume = value ? numberOf(*value) : std::nullopt;
  return beepVolume ? alertVolumeForBeepVolume(*beepVolume) : 1.0F;
}

float SoundExtensions::alertVolumeForBeepVolume(double beepVolume) {
  return std::min(static_cast<float>(quarterOf(beepVolume)), 1.0F);
}

void SoundExtensions::prepareForSound() {
  {
    const std::lock_guard lock(soundDateLock_);
    const Date now = services_.clock.now();
    // KEEP: exactly 25 seconds, and a date in the future after the clock was set back, count as just played.
    if (lastSoundDate_ && lastSoundDate_->secondsSince1970 - now.secondsSince1970 >= -kWarmSeconds) return;
    lastSoundDate_ = now;
  }
  inBackground([this] { playSilentSoundThread(); });
}

void SoundExtensions::playSilentSoundThread() {
  const std::lock_guard lock(silentSoundLock_);
  if (!silentSound_) {
    silentSound_ = soundNamed("SoundOfSilence");
    if (!silentSound_) return;
    silentSound_->setVolume(kSilentVolume);
  }
  playAsSoundEffect(*silentSound_);
}

void SoundExtensions::setSoundDateNow() {
  const std::lock_guard lock(soundDateLock_);
  lastSoundDate_ = services_.clock.now();
}

void SoundExtensions::inBackground(std::function<void()> task) {
  services_.workers.detach(gate_.wrap(std::move(task)));
}

}  // namespace halvorn
