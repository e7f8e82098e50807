// Sounds found where they really lie: in a bundle and in folders on disk.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <filesystem>
#include <fstream>

#include "Platform/bundles/linux/LinuxBundles.h"
#include "Platform/bundles/linux/LinuxDefaults.h"
#include "Platform/files/posix/PosixFileManager.h"
#include "Platform/session/linux/XdgFolders.h"
#include "Platform/session/linux/XdgSearchPaths.h"
#include "tests/fakes/FakeMainThread.h"
#include "tests/fakes/SoundWorld.h"
#include "tests/support/SoundData.h"
#include "tests/support/TemporaryFolder.h"

namespace halvorn {
namespace {

using Texts = std::vector<Text>;

class SoundLookupOnDisk : public testing::Test {
 protected:
  void write(const std::string& path, const std::string& contents) {
    std::filesystem::create_directories(std::filesystem::path(folder / path).parent_path());
    std::ofstream(folder / path, std::ios::binary) << contents;
  }
  // A bundle must be there when the program in it starts.
  std::string programOfNewBundle() {
    write("Installer.app/Contents/Info.plist",
          "<plist><dict><key>CFBundleName</key><string>x</string></dict></plist>");
    write("Installer.app/Contents/Linux/installer", "");
    return folder / "Installer.app/Contents/Linux/installer";
  }
  void writeResource(const std::string& name, const std::string& contents) {
    write("Installer.app/Contents/Resources/" + name, contents);
  }
  Text resource(const std::string& name) const {
    return folder / ("Installer.app/Contents/Resources/" + name);
  }
  // Those below the folder of the test: the machine may have sounds of its own.
  Texts ours(Texts paths) const {
    std::erase_if(paths, [this](const Text& path) { return !path.hasPrefix(folder.path().string()); });
    return paths;
  }

  TemporaryFolder folder;
  SoundWorld world;
  FakeAudioDevices devices;
  FakeSounds player{devices};
  FakeWorkers workers;
  PosixFileManager files;
  LinuxBundles bundles{programOfNewBundle(), {"en"}};
  XdgSearchPaths searchPaths{XdgFolders(Environment(Environment::Variables{{"HOME", folder / "home"}}))};
  SoundExtensions sounds{{.sounds = player,
                          .devices = devices,
                          .searchPaths = searchPaths,
                          .files = files,
                          .bundles = bundles,
                          .defaults = world.defaults,
                          .versions = world.versions,
                          .workers = workers,
                          .clock = world.clock,
                          .log = world.log,
                          .userID = 1000}};
};

TEST_F(SoundLookupOnDisk, FindsTheShippedSoundsInTheBundle) {
  writeResource("Done.aiff", shippedSound("Done.aiff"));
  writeResource("SoundOfSilence.aiff", shippedSound("SoundOfSilence.aiff"));
  writeResource("en.lproj/Hidden.aiff", shippedSound("Done.aiff"));
  writeResource("Product.icns", "icns");
  Texts found = sounds.applicationSoundFiles();
  std::sort(found.begin(), found.end());
  EXPECT_EQ(found, (Texts{resource("Done.aiff"), resource("SoundOfSilence.aiff")}));
  EXPECT_EQ(sounds.applicationSounds(), Texts{"Done"});
  EXPECT_EQ(sounds.pathOfSound("Done"), resource("Done.aiff"));
  EXPECT_NE(sounds.soundNamed("Done"), nullptr);
}

TEST_F(SoundLookupOnDisk, FindsThePersonsSounds) {
  write("home/Library/Sounds/Own.wav", "RIFF");
  write("home/.local/share/sounds/Own.wav", "RIFF");
  write("home/.local/share/sounds/Data.wav", "RIFF");
  write("home/.local/share/sounds/theme/Deep.wav", "RIFF");
  EXPECT_EQ(sounds.pathOfSound("Own"), Text(folder / "home/Library/Sounds/Own.wav"));
  EXPECT_EQ(sounds.pathOfSound("Data"), Text(folder / "home/.local/share/sounds/Data.wav"));
  EXPECT_EQ(sounds.pathOfSound("Deep"), std::nullopt);
  EXPECT_EQ(ours(sounds.systemSoundFiles()).size(), 3U);
}

TEST_F(SoundLookupOnDisk, WithoutAnyFolderThereAreNone) {
  EXPECT_TRUE(sounds.applicationSoundFiles().empty());
  EXPECT_TRUE(ours(sounds.systemSoundFiles()).empty());
}

TEST_F(SoundLookupOnDisk, APipeWithTheNameOfASoundDoesNotBlock) {
  const std::string path = folder / "home/Library/Sounds/Done.wav";
  std::filesystem::create_directories(std::filesystem::path(path).parent_path());
  ASSERT_EQ(::mkfifo(path.c_str(), 0600), 0);
  EXPECT_EQ(sounds.pathOfSound("Done"), Text(path));
  EXPECT_EQ(sounds.soundNamed("Done"), nullptr);
}

TEST_F(SoundLookupOnDisk, AMissingPreferencesFileNamesNoDevice) {
  if (std::filesystem::exists("/Library/Preferences/Audio"))
    GTEST_SKIP() << "this machine has audio preferences";
  EXPECT_EQ(sounds.soundEffectDeviceID(), std::nullopt);
}

}  // namespace
}  // namespace halvorn
