// The fake sound system, and real servers.
#include "Platform/running/posix/PosixClock.h"
#include "Platform/sound/linux/PulseAudioDevices.h"
#include "Platform/sound/linux/PulseServer.h"
#include "Platform/sound/linux/PulseSounds.h"
#include "tests/fakes/FakeSounds.h"
#include "tests/sound/contract/SoundSystems.h"
#include "tests/support/SoundServer.h"
#include "tests/support/WaitingWorkers.h"

namespace halvorn {
namespace {

class FakeSystem : public SoundSystem {
 public:
  Sounds& sounds() override { return sounds_; }
  AudioDevices& devices() override { return devices_; }
  void loseServer() override { devices_.hasServer = false; }
  bool waitForEnd(Sound& sound) override {
    static_cast<FakeSound&>(sound).playing = false;
    return true;
  }

 private:
  FakeAudioDevices devices_;
  FakeSounds sounds_{devices_};
};

template <SoundServer::Kind kind>
class RealSystem : public SoundSystem {
 public:
  Sounds& sounds() override { return sounds_; }
  AudioDevices& devices() override { return devices_; }
  void loseServer() override { soundServer_.process().end(); }
  bool waitForEnd(Sound& sound) override {
    return eventually([&] { return !sound.isPlaying(); });
  }

 private:
  SoundServer soundServer_{kind};
  SoundRecording listener_{soundServer_,
                           "lab_a"};  // makes the sink work in small pieces, so that sounds end soon
  PosixClock clock_;
  WaitingWorkers workers_;
  PulseServer server_{clock_, "Sounds contract"};
  PulseSounds sounds_{server_, workers_};
  PulseAudioDevices devices_{server_};
};

std::optional<std::string> nothing() { return std::nullopt; }
template <SoundServer::Kind kind>
std::optional<std::string> noServer() {
  return SoundServer::missing(kind);
}
template <typename Made>
std::unique_ptr<SoundSystem> make() {
  return std::make_unique<Made>();
}

}  // namespace

const std::vector<NamedSoundSystem>& soundSystems() {
  constexpr auto kPulseAudio = SoundServer::Kind::PulseAudio;
  constexpr auto kPipeWire = SoundServer::Kind::PipeWire;
  static const std::vector<NamedSoundSystem> all = {
      {"Fake", nothing, make<FakeSystem>},
      {"PulseAudio", noServer<kPulseAudio>, make<RealSystem<kPulseAudio>>},
      {"PipeWire", noServer<kPipeWire>, make<RealSystem<kPipeWire>>}};
  return all;
}

}  // namespace halvorn
