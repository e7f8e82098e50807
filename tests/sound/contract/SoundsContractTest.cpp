// What every sound system must do, asked of the fake one and of real servers.
#include <gtest/gtest.h>

#include <memory>

#include "Platform/running/posix/PosixClock.h"
#include "Platform/sound/linux/PulseAudioDevices.h"
#include "Platform/sound/linux/PulseServer.h"
#include "Platform/sound/linux/PulseSounds.h"
#include "tests/fakes/FakeSounds.h"
#include "tests/support/SoundServer.h"
#include "tests/support/ToneFile.h"
#include "tests/support/WaitingWorkers.h"

namespace halvorn {
namespace {

class SoundSystem {
 public:
  virtual ~SoundSystem() = default;
  virtual Sounds& sounds() = 0;
  virtual AudioDevices& devices() = 0;
  virtual void loseServer() = 0;
  // Lets what plays come to its end; false when it does not.
  virtual bool waitForEnd(Sound& sound) = 0;
};

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

enum class System { Fake, PulseAudio, PipeWire };

class SoundsContract : public testing::TestWithParam<System> {
 protected:
  void SetUp() override {
    if (GetParam() == System::Fake) {
      system = std::make_unique<FakeSystem>();
      return;
    }
    const bool isPulseAudio = GetParam() == System::PulseAudio;
    const auto kind = isPulseAudio ? SoundServer::Kind::PulseAudio : SoundServer::Kind::PipeWire;
    if (const auto missing = SoundServer::missing(kind)) GTEST_SKIP() << *missing;
    if (isPulseAudio)
      system = std::make_unique<RealSystem<SoundServer::Kind::PulseAudio>>();
    else
      system = std::make_unique<RealSystem<SoundServer::Kind::PipeWire>>();
  }
  SoundPointer tone(double seconds = 0.25) {
    const Sounds::Result result =
        system->sounds().soundWithData("/sounds/tone.wav", waveFile({.seconds = seconds}));
    EXPECT_NE(result.sound, nullptr) << result.problem.bytes();
    EXPECT_TRUE(result.problem.isEmpty());
    return result.sound;
  }

  std::unique_ptr<SoundSystem> system;
};

TEST_P(SoundsContract, DevicesTellNameManufacturerAndUid) {
  const AudioDevices& devices = system->devices();
  const auto all = devices.devices();
  ASSERT_TRUE(all);
  ASSERT_EQ(all->size(), 2U);
  for (const AudioDeviceID device : *all) {
    EXPECT_TRUE(devices.name(device));
    EXPECT_TRUE(devices.manufacturer(device));
    EXPECT_TRUE(devices.uid(device, AudioScope::Output));
    EXPECT_EQ(devices.uid(device, AudioScope::Output), devices.uid(device, AudioScope::Global));
  }
  EXPECT_NE(devices.uid((*all)[0], AudioScope::Global), devices.uid((*all)[1], AudioScope::Global));
  const auto alerts = devices.defaultSystemOutputDevice();
  ASSERT_TRUE(alerts);
  EXPECT_TRUE(*alerts == (*all)[0] || *alerts == (*all)[1]);

  const AudioDeviceID unknown = 4711;
  EXPECT_EQ(devices.name(unknown), std::nullopt);
  EXPECT_EQ(devices.manufacturer(unknown), std::nullopt);
  EXPECT_EQ(devices.uid(unknown, AudioScope::Output), std::nullopt);
}

TEST_P(SoundsContract, ASoundTakesKnownDevicesAndRefusesOthersWithAReason) {
  const SoundPointer sound = tone();
  const auto all = system->devices().devices();
  ASSERT_TRUE(all);
  for (const AudioDeviceID device : *all) {
    EXPECT_EQ(sound->setPlaybackDeviceIdentifier(system->devices().uid(device, AudioScope::Output)),
              std::nullopt);
  }
  EXPECT_EQ(sound->setPlaybackDeviceIdentifier(Text("unplugged")), Text("no audio device 'unplugged'"));
  EXPECT_NE(sound->setPlaybackDeviceIdentifier(Text("")), std::nullopt);
  EXPECT_NE(sound->setPlaybackDeviceIdentifier(Text("0")), std::nullopt) << "a number is no name";
  EXPECT_NE(sound->setPlaybackDeviceIdentifier(Text("@DEFAULT_SINK@")), std::nullopt) << "nor is a nickname";
  EXPECT_EQ(sound->setPlaybackDeviceIdentifier(std::nullopt), std::nullopt);
}

TEST_P(SoundsContract, ASoundKnowsItsPathAndDuration) {
  const SoundPointer sound = tone();
  EXPECT_EQ(sound->description(), Text("/sounds/tone.wav"));
  EXPECT_DOUBLE_EQ(sound->duration(), 0.25);
}

TEST_P(SoundsContract, DataThatIsNoSoundIsAnsweredWithAReason) {
  for (const char* data : {"", "This is a letter and no sound."}) {
    const Sounds::Result result = system->sounds().soundWithData("/sounds/x.wav", data);
    EXPECT_EQ(result.sound, nullptr) << data;
    EXPECT_FALSE(result.problem.isEmpty()) << data;
  }
}

TEST_P(SoundsContract, ASoundPlaysToItsEndAndAgain) {
  const SoundPointer sound = tone();
  EXPECT_FALSE(sound->isPlaying());
  EXPECT_TRUE(sound->play());
  EXPECT_TRUE(sound->isPlaying());
  EXPECT_FALSE(sound->play()) << "it still plays";
  EXPECT_TRUE(system->waitForEnd(*sound));
  EXPECT_TRUE(sound->play());
  EXPECT_TRUE(system->waitForEnd(*sound));
}

TEST_P(SoundsContract, WithoutAServerThereAreNoDevicesAndSoundsEndUnheard) {
  const SoundPointer sound = tone();
  const auto device = system->devices().defaultSystemOutputDevice();
  ASSERT_TRUE(device);
  const OptionalText uid = system->devices().uid(*device, AudioScope::Output);
  system->loseServer();
  EXPECT_EQ(system->devices().defaultSystemOutputDevice(), std::nullopt);
  EXPECT_EQ(system->devices().devices(), std::nullopt);
  EXPECT_EQ(system->devices().uid(*device, AudioScope::Output), std::nullopt);
  EXPECT_NE(sound->setPlaybackDeviceIdentifier(uid), std::nullopt);
  EXPECT_TRUE(sound->play());
  EXPECT_TRUE(system->waitForEnd(*sound));
}

TEST_P(SoundsContract, AfterEndAllNothingPlaysAndNoDeviceIsKnown) {
  const SoundPointer longSound = tone(5.0);
  EXPECT_TRUE(longSound->play());
  system->sounds().endAll();
  EXPECT_TRUE(eventually([&] { return !longSound->isPlaying(); }));
  EXPECT_EQ(system->devices().defaultSystemOutputDevice(), std::nullopt);
  EXPECT_EQ(system->devices().devices(), std::nullopt);
  longSound->play();
  EXPECT_TRUE(eventually([&] { return !longSound->isPlaying(); }));
  system->sounds().endAll();
}

std::string systemName(const testing::TestParamInfo<System>& parameter) {
  switch (parameter.param) {
    case System::Fake:
      return "Fake";
    case System::PulseAudio:
      return "PulseAudio";
    case System::PipeWire:
      return "PipeWire";
  }
  return "";
}

INSTANTIATE_TEST_SUITE_P(Systems, SoundsContract,
                         testing::Values(System::Fake, System::PulseAudio, System::PipeWire), systemName);

}  // namespace
}  // namespace halvorn
