#include "Platform/sound/linux/LoadedSounds.h"

#include <mutex>

#include "Core/Format.h"
#include "Platform/running/linux/LoadedModule.h"
#include "Platform/sound/linux/SoundModule.h"

namespace halvorn {

struct LoadedSounds::Parts {
  // The module, loaded by the first who asks; null when it cannot be, or when all has ended.
  SoundModule* module() {
    const std::lock_guard lock(mutex);
    if (!hasTried && !hasEnded) {
      hasTried = true;
      load();
    }
    return loaded.get();
  }
  void load() {
    const LoadedModule file(path);
    auto* make = file.function<MakeSoundModule>(kSoundModuleFunction);
    if (make == nullptr) {
      problem = format("sound cannot be played: %@", file.problem());
    } else {
      loaded.reset(make(clock, workers, name.bytes().c_str()));
    }
  }

  const Text path;
  const Clock& clock;
  Workers& workers;
  const Text name;
  std::mutex mutex;
  bool hasTried = false;
  bool hasEnded = false;
  Text problem = "sound has ended";
  std::unique_ptr<SoundModule> loaded;
};

LoadedSounds::LoadedSounds(const Text& modulePath, const Clock& clock, Workers& workers,
                           const Text& applicationName)
    : parts_(new Parts{.path = modulePath,
                       .clock = clock,
                       .workers = workers,
                       .name = applicationName,
                       .mutex = {},
                       .loaded = {}}) {}

LoadedSounds::~LoadedSounds() = default;

Sounds::Result LoadedSounds::soundWithData(const Text& path, const std::string& data) {
  SoundModule* module = parts_->module();
  return module != nullptr ? module->sounds().soundWithData(path, data) : Result{nullptr, parts_->problem};
}

void LoadedSounds::endAll() {
  SoundModule* module = nullptr;
  {
    const std::lock_guard lock(parts_->mutex);
    parts_->hasEnded = true;
    module = parts_->loaded.get();
  }
  if (module != nullptr) module->sounds().endAll();
}

std::optional<AudioDeviceID> LoadedSounds::defaultSystemOutputDevice() const {
  SoundModule* module = parts_->module();
  return module != nullptr ? module->devices().defaultSystemOutputDevice() : std::nullopt;
}

std::optional<std::vector<AudioDeviceID>> LoadedSounds::devices() const {
  SoundModule* module = parts_->module();
  return module != nullptr ? module->devices().devices() : std::nullopt;
}

OptionalText LoadedSounds::name(AudioDeviceID device) const {
  SoundModule* module = parts_->module();
  return module != nullptr ? module->devices().name(device) : std::nullopt;
}

OptionalText LoadedSounds::manufacturer(AudioDeviceID device) const {
  SoundModule* module = parts_->module();
  return module != nullptr ? module->devices().manufacturer(device) : std::nullopt;
}

OptionalText LoadedSounds::uid(AudioDeviceID device, AudioScope scope) const {
  SoundModule* module = parts_->module();
  return module != nullptr ? module->devices().uid(device, scope) : std::nullopt;
}

}  // namespace halvorn
