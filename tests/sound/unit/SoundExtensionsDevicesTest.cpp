#include <gtest/gtest.h>

#include "tests/fakes/FakeMainThread.h"
#include "tests/fakes/SoundWorld.h"

namespace halvorn {
namespace {

using Lines = std::vector<std::string>;

class SoundDevicesTest : public testing::Test {
 protected:
  void setSettings(const PropertyDictionary& settings) {
    world.bundles.propertyLists["/Library/Preferences/Audio/com.apple.audio.SystemSettings.plist"] = settings;
  }

  SoundWorld world;
  FakeAudioDevices devices;
  FakeSounds player{devices};
  FakeWorkers workers;
  SoundExtensions sounds{world.services(player, devices, workers)};
};

using SystemAudioDevice = SoundDevicesTest;

TEST_F(SystemAudioDevice, IsTheUidOfTheDeviceOfTheAlertsOnItsOutputSide) {
  EXPECT_EQ(sounds.systemAudioDeviceID(), Text("speakers"));
  EXPECT_EQ(devices.scopes, std::vector<AudioScope>{AudioScope::Output});
}

TEST_F(SystemAudioDevice, IsAskedForInTheGlobalScopeByTheOtherMethod) {
  EXPECT_EQ(sounds._alertSoundAlertDeviceIdentifier(), Text("speakers"));
  EXPECT_EQ(devices.scopes, std::vector<AudioScope>{AudioScope::Global});
}

TEST_F(SystemAudioDevice, IsNoneWithoutAnAnswer) {
  devices.alertDevice = 99;  // gone since
  EXPECT_EQ(sounds.systemAudioDeviceID(), std::nullopt);
  EXPECT_EQ(sounds._alertSoundAlertDeviceIdentifier(), std::nullopt);
  devices.alertDevice = std::nullopt;
  EXPECT_EQ(sounds.systemAudioDeviceID(), std::nullopt);
  EXPECT_EQ(sounds._alertSoundAlertDeviceIdentifier(), std::nullopt);
  EXPECT_TRUE(world.log.lines().empty());
}

using SoundEffectDevice = SoundDevicesTest;

PropertyDictionary preferred(const PropertyValue& systemOutput) {
  return {{"preferred devices", PropertyDictionary{{"system output", systemOutput}}}};
}

TEST_F(SoundEffectDevice, IsTheFirstPreferredSystemOutput) {
  setSettings(
      preferred(PropertyArray{PropertyDictionary{{"uid", "first"}}, PropertyDictionary{{"uid", "second"}}}));
  EXPECT_EQ(sounds.soundEffectDeviceID(), Text("first"));
}

TEST_F(SoundEffectDevice, IsNoneWhenAnyStepIsMissing) {
  EXPECT_EQ(sounds.soundEffectDeviceID(), std::nullopt) << "no file";
  struct Case {
    PropertyDictionary settings;
    const char* why;
  };
  const Case cases[] = {
      {{}, "an empty dictionary"},
      {{{"preferred devices", "speakers"}}, "preferred devices are no dictionary"},
      {{{"preferred devices", PropertyDictionary{}}}, "no system output"},
      {preferred("speakers"), "system output is no list"},
      {preferred(PropertyArray{}), "an empty list"},
      {preferred(PropertyArray{"speakers"}), "the entry is no dictionary"},
      {preferred(PropertyArray{PropertyDictionary{}}), "the entry has no uid"},
      {preferred(PropertyArray{PropertyDictionary{}, PropertyDictionary{{"uid", "second"}}}),
       "only the first counts"},
      {preferred(PropertyArray{PropertyDictionary{{"uid", 7}}}), "the uid is no text"},
      {{{"0", PropertyDictionary{{"current default system output device", "old"}}}},
       "what older systems keep"},
  };
  for (const Case& test : cases) {
    setSettings(test.settings);
    EXPECT_EQ(sounds.soundEffectDeviceID(), std::nullopt) << test.why;
  }
}

class SoundEffectDeviceOfAnOldSystem : public SoundDevicesTest {
 protected:
  SoundEffectDeviceOfAnOldSystem() { world.systemFacts.framework = 1265.0; }  // before 10.10
  static PropertyDictionary current(const char* device) {
    return {{"current default system output device", device}};
  }
};

TEST_F(SoundEffectDeviceOfAnOldSystem, IsTheOneUnderThePersonsNumber) {
  setSettings({{"1000", current("own")}, {"0", current("everybody")}, {"1001", current("other")}});
  EXPECT_EQ(sounds.soundEffectDeviceID(), Text("own"));
}

TEST_F(SoundEffectDeviceOfAnOldSystem, IsElseTheOneUnderZero) {
  setSettings({{"0", current("everybody")}, {"1001", current("other")}});
  EXPECT_EQ(sounds.soundEffectDeviceID(), Text("everybody"));
  setSettings({{"1000", PropertyDictionary{}}, {"0", current("everybody")}});
  EXPECT_EQ(sounds.soundEffectDeviceID(), Text("everybody")) << "the person's entry names no device";
}

TEST_F(SoundEffectDeviceOfAnOldSystem, IsElseNone) {
  EXPECT_EQ(sounds.soundEffectDeviceID(), std::nullopt);
  setSettings({{"1001", current("other")}});
  EXPECT_EQ(sounds.soundEffectDeviceID(), std::nullopt);
  setSettings(preferred(PropertyArray{PropertyDictionary{{"uid", "new"}}}));
  EXPECT_EQ(sounds.soundEffectDeviceID(), std::nullopt) << "what newer systems keep";
}

TEST_F(SoundEffectDeviceOfAnOldSystem, EndsWith10_10) {
  setSettings({{"1000", current("old")}});
  world.systemFacts.framework = 1342.9;
  EXPECT_EQ(sounds.soundEffectDeviceID(), Text("old"));
  world.systemFacts.framework = 1343.0;
  EXPECT_EQ(sounds.soundEffectDeviceID(), std::nullopt);
}

using ListAudioDevices = SoundDevicesTest;

TEST_F(ListAudioDevices, LogsOneLinePerDeviceWhateverSoundLogSays) {
  sounds.listAudioDevices();
  EXPECT_EQ(world.log.lines(),
            (Lines{"   device Speakers by Acme id speakers", "   device Headphones by Bolt id headphones"}));
}

TEST_F(ListAudioDevices, SkipsADeviceThatDoesNotTellAllThree) {
  devices.list = {{1, std::nullopt, "Acme", "a"},
                  {2, "B", std::nullopt, "b"},
                  {3, "C", "Acme", std::nullopt},
                  {4, "", "", ""},
                  {5, "E", "Acme", "e"}};
  sounds.listAudioDevices();
  EXPECT_EQ(world.log.lines(), (Lines{"   device  by  id ", "   device E by Acme id e"}))
      << "empty is an answer";
}

TEST_F(ListAudioDevices, LogsNothingWithoutAServer) {
  devices.hasServer = false;
  sounds.listAudioDevices();
  devices.hasServer = true;
  devices.list.clear();
  sounds.listAudioDevices();
  EXPECT_TRUE(world.log.lines().empty());
}

TEST_F(ListAudioDevices, CutsNamesToWhatFitsABufferOf64Bytes) {
  // KEEP: name and manufacturer come through a fixed buffer, the uid does not.
  const std::string fits(63, 'x');
  const std::string tooLong = std::string(62, 'x') + "\xC3\xA4";  // 64 bytes, the 63rd inside a character
  const std::string uid(100, 'u');
  devices.list = {{1, Text(fits), Text(fits + "y"), Text(uid)}, {2, Text(tooLong), Text("Acme"), Text("b")}};
  sounds.listAudioDevices();
  EXPECT_EQ(world.log.lines(), (Lines{"   device " + fits + " by " + fits + " id " + uid,
                                      "   device " + std::string(62, 'x') + " by Acme id b"}));
}

TEST_F(ListAudioDevices, KeepsALineALineWhateverTheDeviceIsCalled) {
  devices.list = {{1, "two\nlines", "Acme", "a"}};
  sounds.listAudioDevices();
  EXPECT_EQ(world.log.lines(), Lines{"   device two\\nlines by Acme id a"});
}

}  // namespace
}  // namespace halvorn
