// What is asked of the system's sounds and of Core Audio, and what is held for how long.
#include "Platform/sound/mac/MacAudioDevices.h"
#include "Platform/sound/mac/MacSounds.h"
#include "tests/mac/MacLoop.h"
#include "tests/mac/MacTest.h"
#include "tests/support/TextPrinting.h"
#include "tests/support/ToneFile.h"

namespace halvorn {
namespace {

class MacSoundTest : public MacTest {
 protected:
  void TearDown() override {
    EXPECT_EQ(fakemac::state().liveSounds, 0);
    MacTest::TearDown();
  }
  SoundPointer tone() { return sounds.soundWithData("/tone.wav", waveFile({.seconds = 0.5})).sound; }
  using Lines = std::vector<std::string>;
  MacSounds sounds;
  MacAudioDevices devices{sounds};
};

TEST_F(MacSoundTest, VolumeAndDeviceAreThoseOfTheNextPlay) {
  const MacPool pool;
  const SoundPointer sound = tone();
  sound->play();
  fakemac::finishSounds();
  sound->setVolume(0.25F);
  EXPECT_EQ(sound->setPlaybackDeviceIdentifier(Text("headphones")), std::nullopt);
  sound->play();
  fakemac::finishSounds();
  EXPECT_NE(sound->setPlaybackDeviceIdentifier(Text("unplugged")), std::nullopt);
  sound->play();
  fakemac::finishSounds();
  EXPECT_EQ(sound->setPlaybackDeviceIdentifier(std::nullopt), std::nullopt);
  sound->play();
  fakemac::finishSounds();
  EXPECT_EQ(fakemac::state().playLog, (Lines{"play at 1.00 on default", "play at 0.25 on headphones",
                                             "play at 0.25 on headphones", "play at 0.25 on default"}))
      << "a device that was refused leaves the one before";
}

TEST_F(MacSoundTest, ASoundThatNobodyHoldsPlaysToItsEnd) {
  const MacPool pool;
  {
    const MacPool inner;
    EXPECT_TRUE(tone()->play());
  }
  EXPECT_EQ(fakemac::state().liveSounds, 1);
  fakemac::finishSounds();
  EXPECT_EQ(fakemac::state().liveSounds, 0);
  EXPECT_EQ(fakemac::state().playLog, (Lines{"play at 1.00 on default"}));
}

TEST_F(MacSoundTest, EndingAllStopsWhatPlays) {
  const MacPool pool;
  const SoundPointer first = tone();
  const SoundPointer second = tone();
  first->play();
  second->play();
  sounds.endAll();
  EXPECT_FALSE(first->isPlaying());
  EXPECT_FALSE(second->isPlaying());
  EXPECT_TRUE(first->play()) << "nothing is heard, and that is no failure";
  EXPECT_FALSE(first->isPlaying());
  EXPECT_EQ(fakemac::state().playLog.size(), 2U);
}

TEST_F(MacSoundTest, TheUidIsAskedOnTheSideThatIsWanted) {
  EXPECT_EQ(devices.uid(41, AudioScope::Output), Text("speakers"));
  EXPECT_EQ(devices.uid(42, AudioScope::Global), Text("headphones"));
  EXPECT_EQ(fakemac::state().scopesAsked, (std::vector<std::uint32_t>{0x6F757470, 0x676C6F62}));
}

TEST_F(MacSoundTest, NamesAreReadInFullOrNotAtAll) {
  fakemac::state().audioDevices = {{50, "Grüße", "Maker", "a"},
                                   {51, std::string(63, 'x'), "M", "b"},
                                   {52, std::string(64, 'x'), "M", "c"}};
  EXPECT_EQ(devices.name(50), Text("Grüße"));
  EXPECT_EQ(devices.name(51), Text(std::string(63, 'x')));
  EXPECT_EQ(devices.name(52), std::nullopt) << "no room for its end";
  EXPECT_EQ(devices.manufacturer(50), Text("Maker"));
}

TEST_F(MacSoundTest, ADeviceThatGoesWhileTheListIsReadIsNotInIt) {
  fakemac::state().deviceVanishes = true;
  EXPECT_EQ(devices.devices(), std::vector<AudioDeviceID>{41});
}

TEST_F(MacSoundTest, NoAlertDeviceIsNone) {
  fakemac::state().alertDevice = 0;
  EXPECT_EQ(devices.defaultSystemOutputDevice(), std::nullopt);
  fakemac::state().audioDevices.clear();
  EXPECT_EQ(devices.devices(), std::vector<AudioDeviceID>{});
}

TEST_F(MacSoundTest, DataThatIsCutOffIsNoSound) {
  const std::string whole = waveFile({.seconds = 0.5});
  for (const std::size_t length : {0U, 4U, 43U}) {
    const auto result = sounds.soundWithData("/x.wav", whole.substr(0, length));
    EXPECT_EQ(result.sound, nullptr) << length;
    EXPECT_FALSE(result.problem.isEmpty()) << length;
  }
}

}  // namespace
}  // namespace halvorn
