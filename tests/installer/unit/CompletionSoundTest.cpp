#include "Sources/CompletionSound.h"

#include <gtest/gtest.h>

#include "tests/fakes/FakeMainThread.h"
#include "tests/fakes/SoundWorld.h"

namespace halvorn {
namespace {

using Lines = std::vector<std::string>;

class CompletionSoundTest : public testing::Test {
 protected:
  SoundWorld world;
  FakeAudioDevices devices;
  FakeSounds player{devices};
  FakeWorkers workers;
  SoundExtensions sounds{world.services(player, devices, workers)};
  CompletionSound completionSound{sounds};
};

TEST_F(CompletionSoundTest, PlaysDoneAtTheAlertVolumeOnTheDeviceOfTheAlerts) {
  world.addApplicationSound("Done.aiff");
  world.setBeepVolume(0.61);
  devices.alertDevice = 42;
  completionSound.play(Text("YES"));
  workers.runAll();
  EXPECT_EQ(player.callsOf("play"), Lines{"play Done.aiff at 0.50 on headphones"});
}

TEST_F(CompletionSoundTest, PlaysOnlyForExactlyYes) {
  world.addApplicationSound("Done.aiff");
  for (const OptionalText& value :
       std::vector<OptionalText>{std::nullopt, Text(""), Text("yes"), Text("Yes"), Text("NO"), Text("YES "),
                                 Text(" YES"), Text("1"), Text("TRUE"), Text("YESS")}) {
    completionSound.play(value);
    EXPECT_TRUE(workers.tasks.empty()) << value.value_or("(none)").bytes();
  }
  EXPECT_TRUE(player.calls().empty());
}

TEST_F(CompletionSoundTest, ReturnsBeforeAnythingHasHappened) {
  world.addApplicationSound("Done.aiff");
  completionSound.play(Text("YES"));
  EXPECT_TRUE(player.calls().empty());
  EXPECT_TRUE(devices.scopes.empty());
  EXPECT_EQ(workers.tasks.size(), 1U);
}

TEST_F(CompletionSoundTest, MissingDoneSoundPlaysNothingAndSaysNothing) {
  completionSound.play(Text("YES"));
  workers.runAll();
  EXPECT_TRUE(player.calls().empty());
  EXPECT_TRUE(world.log.lines().empty());
}

TEST_F(CompletionSoundTest, DoneSoundThatCannotBePlayedIsLeftOut) {
  for (const char* contents : {"", "this is no sound"}) {
    world.addApplicationSound("Done.aiff", contents);
    completionSound.play(Text("YES"));
    workers.runAll();
  }
  EXPECT_TRUE(player.callsOf("play").empty());
  EXPECT_TRUE(world.log.lines().empty());
}

TEST_F(CompletionSoundTest, AnAlertVolumeOfZeroPlaysASilentSound) {
  world.addApplicationSound("Done.aiff");
  world.setBeepVolume(0.1);
  completionSound.play(Text("YES"));
  workers.runAll();
  EXPECT_EQ(player.callsOf("play"), Lines{"play Done.aiff at 0.00 on speakers"});
}

TEST_F(CompletionSoundTest, TheSystemsDoneSoundIsTakenWhenTheApplicationHasNone) {
  world.files.addFile("/home/anna/Library/Sounds/Done.wav", "RIFF");
  completionSound.play(Text("YES"));
  workers.runAll();
  EXPECT_EQ(player.callsOf("load"), Lines{"load /home/anna/Library/Sounds/Done.wav"});
  EXPECT_EQ(player.callsOf("play"), Lines{"play Done.wav at 1.00 on speakers"});
}

}  // namespace
}  // namespace halvorn
