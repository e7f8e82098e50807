// The modules beside the program, as they lie in the installer's bundle.
#include <gtest/gtest.h>

#include <fstream>

#include "Platform/running/linux/LoadedModule.h"
#include "Platform/running/posix/PosixClock.h"
#include "Platform/sound/linux/LoadedSounds.h"
#include "Platform/text/linux/LoadedDigests.h"
#include "tests/support/SoundData.h"
#include "tests/support/SoundServer.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/WaitingWorkers.h"

namespace halvorn {
namespace {

class SoundModule : public testing::Test {
 protected:
  LoadedSounds soundsOf(const Text& path) { return {path, clock_, workers_, "Module test"}; }

  const Text modulePath_ = KT_MODULE_FOLDER "/HalvornSound.so";
  PosixClock clock_;
  WaitingWorkers workers_;
};

TEST_F(SoundModule, DecodesASoundWithoutAServer) {
  LoadedSounds sounds = soundsOf(modulePath_);
  const auto result = sounds.soundWithData("/Done.aiff", shippedSound("Done.aiff"));
  ASSERT_TRUE(result.sound) << result.problem.bytes();
  EXPECT_GT(result.sound->duration(), 0.1);
}

TEST_F(SoundModule, KnowsTheDevicesOfTheServer) {
  if (const auto missing = SoundServer::missing()) GTEST_SKIP() << *missing;
  SoundServer server;
  const LoadedSounds sounds = soundsOf(modulePath_);
  const auto device = sounds.defaultSystemOutputDevice();
  ASSERT_TRUE(device);
  EXPECT_EQ(sounds.uid(*device, AudioScope::Output), Text("lab_a"));
  EXPECT_GE(sounds.devices().value_or(std::vector<AudioDeviceID>()).size(), 2U);
  EXPECT_TRUE(sounds.name(*device));
  EXPECT_TRUE(sounds.manufacturer(*device));
}

TEST_F(SoundModule, AMissingModuleIsAMachineWithoutSound) {
  TemporaryFolder folder;
  LoadedSounds sounds = soundsOf(folder / "HalvornSound.so");
  const auto result = sounds.soundWithData("/Done.aiff", shippedSound("Done.aiff"));
  EXPECT_FALSE(result.sound);
  EXPECT_TRUE(result.problem.hasPrefix("sound cannot be played: ")) << result.problem.bytes();
  EXPECT_FALSE(sounds.defaultSystemOutputDevice());
  EXPECT_FALSE(sounds.devices());
  EXPECT_FALSE(sounds.uid(1, AudioScope::Output));
}

TEST_F(SoundModule, AFileThatIsNoModuleIsAMachineWithoutSound) {
  TemporaryFolder folder;
  std::ofstream(folder / "HalvornSound.so") << "not a module";
  LoadedSounds sounds = soundsOf(folder / "HalvornSound.so");
  EXPECT_FALSE(sounds.soundWithData("/Done.aiff", shippedSound("Done.aiff")).sound);
}

TEST_F(SoundModule, AModuleOfAnotherKindIsAMachineWithoutSound) {
  LoadedSounds sounds = soundsOf(KT_MODULE_FOLDER "/HalvornDigests.so");
  EXPECT_FALSE(sounds.soundWithData("/Done.aiff", shippedSound("Done.aiff")).sound);
}

TEST_F(SoundModule, IsNotLoadedAfterTheEnd) {
  LoadedSounds sounds = soundsOf(modulePath_);
  sounds.endAll();
  EXPECT_FALSE(sounds.soundWithData("/Done.aiff", shippedSound("Done.aiff")).sound);
  EXPECT_FALSE(sounds.devices());
}

TEST_F(SoundModule, EndsWhatItMade) {
  LoadedSounds sounds = soundsOf(modulePath_);
  const auto result = sounds.soundWithData("/Done.aiff", shippedSound("Done.aiff"));
  ASSERT_TRUE(result.sound);
  sounds.endAll();
  static_cast<void>(result.sound->play());
  EXPECT_TRUE(eventually([&] { return !result.sound->isPlaying(); }));
}

TEST(ModuleFile, IsNotLookedForInTheSystemsFolders) {
  const LoadedModule module("libc.so.6");
  EXPECT_EQ(module.function<void()>("abort"), nullptr);
  EXPECT_EQ(module.problem(), Text("not a whole path"));
}

TEST(DigestModule, AnswersTheDigestOfTheBytes) {
  const LoadedDigests digests(KT_MODULE_FOLDER "/HalvornDigests.so");
  const auto digest = digests.md5("abc");
  ASSERT_TRUE(digest);
  const Md5Digest expected = {0x90, 0x01, 0x50, 0x98, 0x3c, 0xd2, 0x4f, 0xb0,
                              0xd6, 0x96, 0x3f, 0x7d, 0x28, 0xe1, 0x7f, 0x72};
  EXPECT_EQ(*digest, expected);
}

TEST(DigestModule, WithoutItThereIsNoDigest) {
  EXPECT_FALSE(LoadedDigests("/nowhere/HalvornDigests.so").md5("abc"));
}

}  // namespace
}  // namespace halvorn
