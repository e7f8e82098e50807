// A sound system in memory: devices, and sounds that write down what was asked of them.
//
//   FakeAudioDevices devices;                // speakers and headphones; alerts play on the speakers
//   FakeSounds sounds(devices);
//   ... EXPECT_EQ(sounds.calls, ...);        // "device speakers", "duration", "play at 0.50 on speakers"
#pragma once

#include <algorithm>
#include <cstdio>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "Core/Format.h"
#include "Core/Paths.h"
#include "Platform/sound/AudioDevices.h"
#include "Platform/sound/Sounds.h"

namespace halvorn {

class FakeAudioDevices : public AudioDevices {
 public:
  struct Device {
    AudioDeviceID id = 0;
    OptionalText name;
    OptionalText manufacturer;
    OptionalText uid;
  };

  std::optional<AudioDeviceID> defaultSystemOutputDevice() const override {
    return hasServer ? alertDevice : std::nullopt;
  }
  std::optional<std::vector<AudioDeviceID>> devices() const override {
    if (!hasServer) return std::nullopt;
    std::vector<AudioDeviceID> ids;
    for (const Device& device : list) ids.push_back(device.id);
    return ids;
  }
  OptionalText name(AudioDeviceID device) const override { return ask(device, &Device::name); }
  OptionalText manufacturer(AudioDeviceID device) const override {
    return ask(device, &Device::manufacturer);
  }
  OptionalText uid(AudioDeviceID device, AudioScope scope) const override {
    scopes.push_back(scope);
    return ask(device, &Device::uid);
  }
  [[nodiscard]] bool hasUid(const Text& uid) const {
    return std::any_of(list.begin(), list.end(), [&](const Device& device) { return device.uid == uid; });
  }

  std::vector<Device> list = {{41, "Speakers", "Acme", "speakers"}, {42, "Headphones", "Bolt", "headphones"}};
  std::optional<AudioDeviceID> alertDevice = 41;
  bool hasServer = true;
  mutable std::vector<AudioScope> scopes;  // of each uid() asked for

 private:
  [[nodiscard]] OptionalText ask(AudioDeviceID id, OptionalText Device::*property) const {
    const auto found =
        std::find_if(list.begin(), list.end(), [&](const Device& device) { return device.id == id; });
    return hasServer && found != list.end() ? (*found).*property : std::nullopt;
  }
};

// What all its sounds share.
struct FakeSoundCalls {
  void add(const std::string& call) {
    const std::lock_guard lock(mutex);
    calls.push_back(call);
  }
  std::mutex mutex;
  std::vector<std::string> calls;
  bool hasEnded = false;
};

class FakeSound : public Sound {
 public:
  FakeSound(const FakeAudioDevices& devices, FakeSoundCalls& calls, const Text& path)
      : devices_(devices), calls_(calls), path_(path) {}

  Text description() const override { return path_; }
  void setVolume(float value) override { volume = std::clamp(value, 0.0F, 1.0F); }
  OptionalText setPlaybackDeviceIdentifier(const OptionalText& uid) override {
    calls_.add("device " + uid.value_or("none").bytes());
    if (uid && !(devices_.hasServer && devices_.hasUid(*uid))) return format("no audio device '%@'", *uid);
    device = uid;
    return std::nullopt;
  }
  double duration() const override {
    calls_.add("duration");
    return seconds;
  }
  bool play() override {
    if (playing) return false;
    char level[16];
    std::snprintf(level, sizeof level, "%.2f", static_cast<double>(volume));
    calls_.add("play " + Paths::lastComponent(path_).bytes() + " at " + level + " on " +
               device.value_or("default").bytes());
    playing = devices_.hasServer && !calls_.hasEnded;
    return true;
  }
  bool isPlaying() const override { return playing; }

  double seconds = 0.25;
  float volume = 1.0F;
  OptionalText device;
  bool playing = false;  // until a test says otherwise

 private:
  const FakeAudioDevices& devices_;
  FakeSoundCalls& calls_;
  Text path_;
};

// Takes any data that begins as a WAVE or AIFF file does.
class FakeSounds : public Sounds {
 public:
  explicit FakeSounds(FakeAudioDevices& devices) : devices_(devices) {}

  Result soundWithData(const Text& path, const std::string& data) override {
    shared_.add("load " + path.bytes());
    if (data.empty()) return {nullptr, "the file is empty"};
    if (!data.starts_with("RIFF") && !data.starts_with("FORM")) return {nullptr, "no kind of sound"};
    auto sound = std::make_shared<FakeSound>(devices_, shared_, path);
    loaded.push_back(sound);
    return {sound, Text()};
  }
  void endAll() override {
    shared_.add("end all");
    shared_.hasEnded = true;
    devices_.hasServer = false;
    for (const auto& sound : loaded) sound->playing = false;
  }

  // In order; "load PATH", "device UID", "duration", "play NAME at VOLUME on DEVICE", "end all".
  [[nodiscard]] std::vector<std::string> calls() {
    const std::lock_guard lock(shared_.mutex);
    return shared_.calls;
  }
  void clearCalls() {
    const std::lock_guard lock(shared_.mutex);
    shared_.calls.clear();
  }
  // The calls that begin with the word.
  [[nodiscard]] std::vector<std::string> callsOf(const std::string& word) {
    std::vector<std::string> result = calls();
    std::erase_if(result, [&](const std::string& call) { return !call.starts_with(word); });
    return result;
  }

  std::vector<std::shared_ptr<FakeSound>> loaded;

 private:
  FakeAudioDevices& devices_;
  FakeSoundCalls shared_;
};

}  // namespace halvorn
