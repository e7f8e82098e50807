// What every sound system must do.
#include <gtest/gtest.h>

#include <memory>

#include "tests/sound/contract/SoundSystems.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/TextPrinting.h"
#include "tests/support/ToneFile.h"

namespace halvorn {
namespace {

class SoundsContract : public testing::TestWithParam<NamedSoundSystem> {
 protected:
  void SetUp() override {
    if (const auto missing = GetParam().missing()) GTEST_SKIP() << *missing;
    system = GetParam().make();
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

INSTANTIATE_TEST_SUITE_P(Systems, SoundsContract, testing::ValuesIn(soundSystems()),
                         [](const auto& system) { return system.param.name; });

}  // namespace
}  // namespace halvorn
