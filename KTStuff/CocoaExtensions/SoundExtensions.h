// Sounds: where they lie, and how they play the way the desktop's own alerts do: on the device the person
// chose for alerts, at the loudness chosen for alerts, and without the clipped start of a device that sleeps.
//
//   if (const SoundPointer done = sounds.soundNamed("Done")) {
//     done->setVolume(sounds.alertVolume());
//     sounds.playAsSoundEffect(*done);
//   }
//
// A sound's name is its file name without folder and extension.
//
// What asks for devices or plays may wait for the sound server, some seconds when that does not answer; who
// must not wait does it inBackground().
//
// Thread: any. Fails: a sound that cannot be played is not heard; nothing else happens.
#pragma once

#include <cstdint>
#include <functional>
#include <mutex>
#include <optional>
#include <set>
#include <vector>

#include "Core/Date.h"
#include "Core/Log.h"
#include "Core/TaskGate.h"
#include "Core/Text.h"
#include "KTStuff/KTClasses/KTUtilitiesVersions.h"
#include "Platform/bundles/Bundles.h"
#include "Platform/bundles/Defaults.h"
#include "Platform/files/FileManager.h"
#include "Platform/files/SearchPaths.h"
#include "Platform/running/Clock.h"
#include "Platform/running/Workers.h"
#include "Platform/sound/AudioDevices.h"
#include "Platform/sound/Sounds.h"

namespace halvorn {

struct SoundServices {  // what sounds are played through
  Sounds& sounds;
  const AudioDevices& devices;
  const SearchPaths& searchPaths;
  const FileManager& files;
  const Bundles& bundles;
  const Defaults& defaults;
  const KTUtilitiesVersions& versions;
  Workers& workers;
  const Clock& clock;
  const Log& log;
  std::uint32_t userID = 0;  // the person's numeric id
};

class SoundExtensions {
 public:
  explicit SoundExtensions(const SoundServices& services);  // the services outlive it
  // Cuts off all sound and waits for the tasks that run in the background; that takes no time worth noticing.
  ~SoundExtensions();
  SoundExtensions(const SoundExtensions&) = delete;
  SoundExtensions& operator=(const SoundExtensions&) = delete;

  // --- Files and lookup (SoundExtensionsFiles.cpp)

  // Exact and case-sensitive: "aiff" and "AIFF", but not "Aiff".
  [[nodiscard]] static const std::set<Text>& soundFileExtensions();
  // By the extension alone; there need not be such a file.
  [[nodiscard]] static bool isSoundFileAtPath(const Text& path);
  // Paths of the sounds in the main bundle's resources, in the order the bundle lists them.
  [[nodiscard]] std::vector<Text> applicationSoundFiles() const;
  // Their names, sorted; "SoundOfSilence" is left out, a name with two extensions stands there twice.
  [[nodiscard]] std::vector<Text> applicationSounds() const;
  // Paths of the sounds in the system's sound folders, folder by folder, subfolders left out.
  [[nodiscard]] std::vector<Text> systemSoundFiles() const;
  // Their names, sorted, each once.
  [[nodiscard]] std::vector<Text> systemSounds() const;
  // The first file with exactly that name, the application's sounds before the system's.
  [[nodiscard]] OptionalText pathOfSound(const Text& name) const;
  // The sound in that file; null when there is none that can be played.
  // Logs: the reason, when the user default "soundLog" is on.
  [[nodiscard]] SoundPointer soundNamed(const Text& name) const;

  // --- Playing (SoundExtensionsPlaying.cpp)

  // Starts the sound on the device of the person's alerts, or on the default device when that one is refused.
  // Logs: every step, when the user default "soundLog" is on; otherwise nothing.
  void playAsSoundEffect(Sound& sound);
  // What the person's setting for alerts means as a volume of Sound::setVolume(); 1 when there is no setting.
  [[nodiscard]] float alertVolume() const;
  // The setting counts in steps of the desktop's slider: 0.35 is silence, 0.47 a quarter, 0.61 a half, 0.78
  // three quarters, 1 and above full.
  [[nodiscard]] static float alertVolumeForBeepVolume(double beepVolume);

  // Wakes the sound device in the background unless a sound was played within the last 25 seconds. To be
  // called some time before a sound; never keeps its caller waiting.
  void prepareForSound();
  // The work of prepareForSound().
  void playSilentSoundThread();
  void setSoundDateNow();  // as when a sound is played

  // Runs the task on a thread of its own; not at all once this object is being
  // destroyed. The task may use this object.
  void inBackground(std::function<void()> task);

  // --- Devices (SoundExtensionsDevices.cpp)

  // The lasting name (AudioDevices::uid) of the device of the person's alerts.
  [[nodiscard]] OptionalText systemAudioDeviceID() const;
  // The same, asked of the device as a whole and not of its output side.
  [[nodiscard]] OptionalText _alertSoundAlertDeviceIdentifier() const;
  // The same, as the audio preferences file remembers it.
  [[nodiscard]] OptionalText soundEffectDeviceID() const;
  // Logs: "   device %s by %s id %@" for each device that tells all three.
  void listAudioDevices() const;

 private:
  [[nodiscard]] OptionalText outputDeviceUID(AudioScope scope) const;

  SoundServices services_;

  std::mutex soundDateLock_;
  std::optional<Date> lastSoundDate_;

  std::mutex silentSoundLock_;  // held while the silent sound is loaded and started
  SoundPointer silentSound_;

  TaskGate gate_;
};

}  // namespace halvorn
