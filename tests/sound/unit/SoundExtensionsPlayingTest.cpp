#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "tests/fakes/FakeMainThread.h"
#include "tests/fakes/SoundWorld.h"

namespace halvorn {
namespace {

using Lines = std::vector<std::string>;

class SoundPlayingTest : public testing::Test {
 protected:
  SoundPointer done() {
    if (!done_) {
      world.addApplicationSound("Done.aiff");
      done_ = sounds.soundNamed("Done");
      player.clearCalls();
    }
    return done_;
  }

  SoundWorld world;
  FakeAudioDevices devices;
  FakeSounds player{devices};
  FakeWorkers workers;
  SoundExtensions sounds{world.services(player, devices, workers)};

 private:
  SoundPointer done_;
};

using PlayAsSoundEffect = SoundPlayingTest;

TEST_F(PlayAsSoundEffect, PlaysOnTheDeviceOfTheAlertsAfterLoading) {
  devices.alertDevice = 42;
  sounds.playAsSoundEffect(*done());
  EXPECT_EQ(player.calls(), (Lines{"device headphones", "duration", "play Done.aiff at 1.00 on headphones"}));
}

TEST_F(PlayAsSoundEffect, LogsNothingWhenSoundLogIsOff) {
  sounds.playAsSoundEffect(*done());
  devices.list[0].uid = "unplugged";
  devices.list[0].id = 7;  // the device of the alerts is gone
  sounds.playAsSoundEffect(*done());
  EXPECT_TRUE(world.log.lines().empty());
}

TEST_F(PlayAsSoundEffect, LogsEveryStepWhenSoundLogIsOn) {
  world.setSoundLog();
  sounds.playAsSoundEffect(*done());
  const std::string path = "/Applications/Installer.app/Contents/Resources/Done.aiff";
  EXPECT_EQ(world.log.lines(),
            (Lines{"playAsSoundEffect: " + path, "   device Speakers by Acme id speakers",
                   "   device Headphones by Bolt id headphones", "+SL: soundEffectID=speakers",
                   "+SL: setPlaybackDeviceIdentifier:speakers", "+SL: play self (" + path + ")"}));
}

TEST_F(PlayAsSoundEffect, WithoutADevicePlaysOnTheDefaultOne) {
  world.setSoundLog();
  devices.alertDevice = std::nullopt;
  sounds.playAsSoundEffect(*done());
  EXPECT_EQ(player.calls(), (Lines{"duration", "play Done.aiff at 1.00 on default"}));
  const std::string path = "/Applications/Installer.app/Contents/Resources/Done.aiff";
  const Lines lines = world.log.lines();
  EXPECT_EQ(Lines(lines.end() - 2, lines.end()),
            (Lines{"+SL: soundEffectID=(null)", "+SL: play self (" + path + ")"}));
}

// Names a device for the alerts that no sound accepts.
class UnpluggedDevices : public FakeAudioDevices {
 public:
  OptionalText uid(AudioDeviceID device, AudioScope scope) const override {
    return scope == AudioScope::Output ? OptionalText("unplugged") : FakeAudioDevices::uid(device, scope);
  }
};

class PlayOnRefusedDevice : public SoundPlayingTest {
 protected:
  UnpluggedDevices unplugged;
  SoundExtensions onUnplugged{world.services(player, unplugged, workers)};
};

TEST_F(PlayOnRefusedDevice, FallsBackToTheDefaultDevice) {
  onUnplugged.playAsSoundEffect(*done());
  EXPECT_EQ(player.calls(),
            (Lines{"device unplugged", "device none", "duration", "play Done.aiff at 1.00 on default"}));
  EXPECT_TRUE(world.log.lines().empty());
}

TEST_F(PlayOnRefusedDevice, TellsTheReasonWhenSoundLogIsOn) {
  world.setSoundLog();
  onUnplugged.playAsSoundEffect(*done());
  const Lines lines = world.log.lines();
  ASSERT_EQ(lines.size(), 7U);
  EXPECT_EQ(Lines(lines.begin() + 3, lines.begin() + 6),
            (Lines{"+SL: soundEffectID=unplugged", "+SL: setPlaybackDeviceIdentifier:unplugged",
                   "+SL: exception no audio device 'unplugged'"}));
}

using AlertVolume = SoundPlayingTest;

TEST_F(AlertVolume, MapsTheSettingOntoFourQuarters) {
  struct Case {
    double setting;
    float volume;
    const char* why;
  };
  for (const Case& test : {
           Case{-1.0, 0.0F, "below the scale"},
           {0.0, 0.0F, "the slider's end"},
           {0.35, 0.0F, "first break point"},
           {0.41, 0.125F, "middle of the first quarter"},
           {0.47, 0.25F, "second break point"},
           {0.54, 0.375F, "middle of the second quarter"},
           {0.61, 0.5F, "third break point"},
           {0.695, 0.625F, "middle of the third quarter"},
           {0.78, 0.75F, "fourth break point"},
           {0.89, 0.875F, "middle of the fourth quarter"},
           {1.0, 1.0F, "full"},
           {1.0001, 1.0F, "capped"},
           {17.0, 1.0F, "capped"},
       }) {
    EXPECT_FLOAT_EQ(SoundExtensions::alertVolumeForBeepVolume(test.setting), test.volume)
        << test.setting << ": " << test.why;
  }
}

// The mapping as a table of lines, computed by its own road: from the line's ends instead of its slope.
TEST_F(AlertVolume, IsOnTheLineBetweenTheBreakPointsEverywhere) {
  const double points[] = {0.35, 0.47, 0.61, 0.78, 1.0};
  for (int quarter = 0; quarter < 4; ++quarter) {
    const double from = points[quarter];
    const double to = points[quarter + 1];
    for (int step = 0; step <= 1000; ++step) {
      const double part = step / 1000.0;
      const double setting = from + (to - from) * part;
      EXPECT_NEAR(SoundExtensions::alertVolumeForBeepVolume(setting), (quarter + part) * 0.25, 1e-6)
          << setting;
    }
  }
}

TEST_F(AlertVolume, HasNoJumpAtTheBreakPoints) {
  for (const double point : {0.35, 0.47, 0.61, 0.78, 1.0}) {
    const double below = std::nextafter(point, 0.0);
    const double above = std::nextafter(point, 2.0);
    const float at = SoundExtensions::alertVolumeForBeepVolume(point);
    EXPECT_NEAR(SoundExtensions::alertVolumeForBeepVolume(below), at, 1e-7) << point;
    EXPECT_NEAR(SoundExtensions::alertVolumeForBeepVolume(above), at, 1e-7) << point;
    EXPECT_LE(SoundExtensions::alertVolumeForBeepVolume(below),
              SoundExtensions::alertVolumeForBeepVolume(above));
  }
}

TEST_F(AlertVolume, IsExactAtTheBreakPointsAndInSinglePrecision) {
  static_assert(std::is_same_v<decltype(SoundExtensions::alertVolumeForBeepVolume(0.5)), float>);
  EXPECT_EQ(SoundExtensions::alertVolumeForBeepVolume(0.35), 0.0F);
  EXPECT_EQ(SoundExtensions::alertVolumeForBeepVolume(0.47), 0.25F);
  EXPECT_EQ(SoundExtensions::alertVolumeForBeepVolume(0.61), 0.5F);
  EXPECT_EQ(SoundExtensions::alertVolumeForBeepVolume(0.78), 0.75F);
  EXPECT_EQ(SoundExtensions::alertVolumeForBeepVolume(1.0), 1.0F);
  EXPECT_EQ(SoundExtensions::alertVolumeForBeepVolume(std::nextafter(1.0, 2.0)), 1.0F);
  EXPECT_EQ(SoundExtensions::alertVolumeForBeepVolume(std::numeric_limits<double>::infinity()), 1.0F);
  EXPECT_EQ(SoundExtensions::alertVolumeForBeepVolume(0.7),
            static_cast<float>((0.7 - 0.61) / (0.78 - 0.61) * 0.25 + 0.5));
  EXPECT_EQ(SoundExtensions::alertVolumeForBeepVolume(0.9),
            static_cast<float>((0.9 - 0.78) / (1.0 - 0.78) * 0.25 + 0.75));
}

TEST_F(AlertVolume, IsFullWithoutASetting) { EXPECT_EQ(sounds.alertVolume(), 1.0F); }

TEST_F(AlertVolume, ReadsTheSystemSoundDomain) {
  world.setBeepVolume(0.61);
  EXPECT_FLOAT_EQ(sounds.alertVolume(), 0.5F);
  world.setBeepVolume(0.2);
  EXPECT_EQ(sounds.alertVolume(), 0.0F);
}

TEST_F(AlertVolume, OfTheProgramsOwnDefaultsWinsOverTheSystemSoundDomain) {
  world.setBeepVolume(0.61);
  world.defaults.values.insert_or_assign("com.apple.sound.beep.volume", PropertyValue("0.47"));
  EXPECT_FLOAT_EQ(sounds.alertVolume(), 0.25F);
}

TEST_F(AlertVolume, TakesWhateverHasAFloatValue) {
  world.setBeepVolume(1);
  EXPECT_EQ(sounds.alertVolume(), 1.0F);
  world.setBeepVolume(0);
  EXPECT_EQ(sounds.alertVolume(), 0.0F);
  world.setBeepVolume(true);
  EXPECT_EQ(sounds.alertVolume(), 1.0F);
  world.setBeepVolume("0.61");
  EXPECT_FLOAT_EQ(sounds.alertVolume(), 0.5F);
  world.setBeepVolume("loud");
  EXPECT_EQ(sounds.alertVolume(), 0.0F) << "a text without a number reads as 0";
}

TEST_F(AlertVolume, IsFullWhenTheSettingHasNoFloatValue) {
  for (const PropertyValue& value :
       {PropertyValue(PropertyArray{0.5}), PropertyValue(PropertyDictionary{}),
        PropertyValue(PropertyData{"0.5"}), PropertyValue(Date{0.5}), PropertyValue(std::nan(""))}) {
    world.setBeepVolume(value);
    EXPECT_EQ(sounds.alertVolume(), 1.0F) << value.description().bytes();
  }
}

class PrepareForSound : public SoundPlayingTest {
 protected:
  PrepareForSound() { world.addApplicationSound("SoundOfSilence.aiff"); }
  Lines plays() { return player.callsOf("play"); }
};

TEST_F(PrepareForSound, PlaysTheSilentSoundOnTheDeviceOfTheAlerts) {
  sounds.prepareForSound();
  workers.runAll();
  EXPECT_EQ(plays(), Lines{"play SoundOfSilence.aiff at 0.01 on speakers"});
}

TEST_F(PrepareForSound, DoesNothingOnTheThreadOfItsCaller) {
  sounds.prepareForSound();
  EXPECT_TRUE(player.calls().empty());
  EXPECT_TRUE(devices.scopes.empty());
  EXPECT_EQ(workers.tasks.size(), 1U);
}

TEST_F(PrepareForSound, OnlyTheFirstOfTwoCallsWithin25SecondsStartsAWarmUp) {
  sounds.prepareForSound();
  sounds.prepareForSound();
  EXPECT_EQ(workers.tasks.size(), 1U) << "the date is set when the warm-up starts, not when it has played";
  workers.runAll();
  world.clock.advance(24.9);
  sounds.prepareForSound();
  EXPECT_TRUE(workers.tasks.empty());
}

TEST_F(PrepareForSound, StillDoesNothingAtExactly25Seconds) {
  sounds.prepareForSound();
  workers.runAll();
  world.clock.advance(25.0);
  sounds.prepareForSound();
  EXPECT_TRUE(workers.tasks.empty());
  world.clock.advance(0.001);
  sounds.prepareForSound();
  EXPECT_EQ(workers.tasks.size(), 1U);
}

TEST_F(PrepareForSound, LoadsTheSilentSoundOnce) {
  for (int round = 0; round < 3; ++round) {
    sounds.prepareForSound();
    workers.runAll();
    ASSERT_EQ(player.loaded.size(), 1U);
    player.loaded.front()->playing = false;
    world.clock.advance(26.0);
  }
  EXPECT_EQ(plays().size(), 3U);
}

TEST_F(PrepareForSound, IsNotNeededAfterASoundWasPlayed) {
  sounds.playAsSoundEffect(*done());
  world.clock.advance(20.0);
  sounds.prepareForSound();
  EXPECT_TRUE(workers.tasks.empty());
}

TEST_F(PrepareForSound, CountsFromTheMomentTheWarmUpPlayed) {
  sounds.prepareForSound();
  world.clock.advance(10.0);
  workers.runAll();
  world.clock.advance(20.0);
  sounds.prepareForSound();
  EXPECT_TRUE(workers.tasks.empty()) << "played 20 seconds ago, though asked for 30 seconds ago";
}

TEST_F(PrepareForSound, AndSetSoundDateNowKeepTheSameDate) {
  sounds.setSoundDateNow();
  sounds.prepareForSound();
  EXPECT_TRUE(workers.tasks.empty());
}

TEST_F(PrepareForSound, ADateInTheFutureCountsAsJustPlayed) {
  // As after the clock was set back.
  world.clock.advance(1000.0);
  sounds.setSoundDateNow();
  FakeClock earlier;
  world.clock = earlier;
  sounds.prepareForSound();
  EXPECT_TRUE(workers.tasks.empty());
}

TEST_F(PrepareForSound, WithoutTheSilentSoundTriesAgainNextTime) {
  const Text path = "/Applications/Installer.app/Contents/Resources/SoundOfSilence.aiff";
  world.files.take(path.bytes());
  sounds.prepareForSound();
  workers.runAll();
  EXPECT_TRUE(plays().empty());
  world.files.addFile(path.bytes(), "FORM");
  world.clock.advance(26.0);
  sounds.prepareForSound();
  workers.runAll();
  EXPECT_EQ(plays().size(), 1U);
}

TEST_F(PrepareForSound, PlaySilentSoundThreadMayBeCalledByItself) {
  sounds.playSilentSoundThread();
  EXPECT_EQ(plays().size(), 1U);
}

TEST(SoundExtensionsEnd, CutsOffAllSoundAndForgetsTasksThatHaveNotBegun) {
  SoundWorld world;
  world.addApplicationSound("SoundOfSilence.aiff");
  FakeAudioDevices devices;
  FakeSounds player{devices};
  FakeWorkers workers;
  {
    SoundExtensions sounds{world.services(player, devices, workers)};
    sounds.prepareForSound();
    EXPECT_TRUE(player.calls().empty());
  }
  EXPECT_EQ(player.calls(), Lines{"end all"});
  workers.runAll();
  EXPECT_EQ(player.calls(), Lines{"end all"}) << "the task found its object gone and did nothing";
}

}  // namespace
}  // namespace halvorn
