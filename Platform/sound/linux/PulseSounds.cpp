#include "Platform/sound/linux/PulseSounds.h"

#include <algorithm>
#include <atomic>
#include <utility>

#include "Core/Format.h"
#include "Core/Paths.h"
#include "Platform/sound/linux/PulseAudioDevices.h"
#include "Platform/sound/linux/PulsePlayback.h"

namespace halvorn {
namespace {

class PulseSound : public Sound {
 public:
  PulseSound(PulseServer& server, Workers& workers, TaskGate& gate, const Text& path, SoundBytes bytes,
             double seconds)
      : server_(server),
        workers_(workers),
        gate_(gate),
        path_(path),
        bytes_(std::move(bytes)),
        seconds_(seconds) {}

  Text description() const override { return path_; }
  void setVolume(float volume) override { volume_ = std::clamp(volume, 0.0F, 1.0F); }
  double duration() const override { return seconds_; }
  bool isPlaying() const override { return *isPlaying_; }

  OptionalText setPlaybackDeviceIdentifier(const OptionalText& uid) override {
    if (uid) {
      const auto presence = PulseAudioDevices::presenceOf(server_, *uid);
      if (presence == PulseAudioDevices::Presence::Absent) return format("no audio device '%@'", *uid);
      if (presence == PulseAudioDevices::Presence::Unknown) return Text("the sound server does not answer");
    }
    device_ = uid;
    return std::nullopt;
  }

  bool play() override {
    if (isPlaying_->exchange(true)) return false;
    const PulsePlayback playback = {Paths::deletingExtension(Paths::lastComponent(path_)),
                                    Paths::extension(path_), bytes_, volume_, device_};
    workers_.detach(gate_.wrap([&server = server_, isPlaying = isPlaying_, playback] {
      playback.run(server);
      *isPlaying = false;
    }));
    return true;
  }

 private:
  PulseServer& server_;
  Workers& workers_;
  TaskGate& gate_;
  Text path_;
  SoundBytes bytes_;
  double seconds_;
  float volume_ = 1.0F;
  OptionalText device_;
  // Shared with the task: the sound may be let go while it plays.
  std::shared_ptr<std::atomic<bool>> isPlaying_ = std::make_shared<std::atomic<bool>>(false);
};

}  // namespace

PulseSounds::~PulseSounds() {
  server_.endAll();
  gate_.close();
}

Sounds::Result PulseSounds::soundWithData(const Text& path, const std::string& data) {
  const auto bytes = std::make_shared<const std::string>(data);
  const auto opened = SoundDecoder::open(bytes, Paths::extension(path));
  if (const auto* problem = std::get_if<SoundDecoder::Problem>(&opened)) return {nullptr, problem->reason};
  const SoundDecoder& decoder = *std::get<std::unique_ptr<SoundDecoder>>(opened);
  if (!canPlay(decoder)) return {nullptr, "too many channels, or a rate that cannot be played"};
  return {std::make_shared<PulseSound>(server_, workers_, gate_, path, bytes, decoder.seconds()), Text()};
}

void PulseSounds::endAll() { server_.endAll(); }

}  // namespace halvorn
