#include <gtest/gtest.h>

#include <algorithm>

#include "tests/fakes/FakeMainThread.h"
#include "tests/fakes/SoundWorld.h"

namespace halvorn {
namespace {

using Texts = std::vector<Text>;

class SoundFilesTest : public testing::Test {
 protected:
  SoundWorld world;
  FakeAudioDevices devices;
  FakeSounds player{devices};
  FakeWorkers workers;
  SoundExtensions sounds{world.services(player, devices, workers)};
};

using SoundFileExtensions = SoundFilesTest;

TEST_F(SoundFileExtensions, AreExactlyTheseTwentyThree) {
  const std::set<Text> expected = {"aiff", "AIFF",   "'AIFF'", "aif", "AIF", "aifc", "AIFC",   "wav",
                                   "WAV",  "'WAVE'", "snd",    "SND", "au",  "AU",   "'ULAW'", "'ALAW'",
                                   "mp3",  "MP3",    "'Mp3 '", "ulw", "ULW", "m4p",  "m4a"};
  EXPECT_EQ(expected.size(), 23U);
  EXPECT_EQ(SoundExtensions::soundFileExtensions(), expected);
}

TEST_F(SoundFileExtensions, AreTheSameObjectEachTime) {
  EXPECT_EQ(&SoundExtensions::soundFileExtensions(), &SoundExtensions::soundFileExtensions());
}

TEST_F(SoundFileExtensions, DecideWhatASoundFileIs) {
  struct Case {
    const char* path;
    bool isSound;
    const char* why;
  };
  for (const Case& test : {
           Case{"/s/Done.AIFF", true, "capitals are listed"},
           {"/s/Done.aiff", true, "small letters are listed"},
           {"/s/Done.Aiff", false, "a mixture is not"},
           {"/s/Done.'AIFF'", true, "the six characters of the file-type code, quotes included"},
           {"/s/Done.'aiff'", false, "a file-type code has its own spelling"},
           {"/s/Done.'Mp3 '", true, "a blank is part of the code"},
           {"/s/Done.Mp3 ", false, "without quotes it is no code"},
           {"/s/Done.'Mp3'", false, "a code has four characters"},
           {"/s/Done.Wav", false, "no other spelling"},
           {"/s/Done.M4A", false, "listed in small letters only"},
           {"/s/Done.m4p", true, "listed"},
           {"/s/Done", false, "no extension"},
           {"/s/aiff", false, "a name is no extension"},
           {"/s/.aiff", false, "a hidden file without extension"},
           {"/s/Done.aiff/", true, "a slash at the end changes nothing"},
           {"Done.one.two.wav", true, "the last extension counts, a folder is not needed"},
           {"/s.wav/Done", false, "the extension of a folder on the way"},
           {"/s/Done.ogg", false, "not in the set, though it can be played"},
           {"", false, "nothing at all"},
       }) {
    EXPECT_EQ(SoundExtensions::isSoundFileAtPath(test.path), test.isSound) << test.path << ": " << test.why;
  }
}

TEST_F(SoundFileExtensions, DecideWithoutAnyFileBeingThere) {
  EXPECT_TRUE(SoundExtensions::isSoundFileAtPath("/nowhere/at/all.wav"));
}

// A bundle that lists its resources in an order of its own.
class ListingBundles : public FakeBundles {
 public:
  std::vector<Text> resourcePaths(const Text& bundlePath) const override {
    return bundlePath == mainBundle ? listing : std::vector<Text>();
  }
  std::vector<Text> listing;
};

TEST(ApplicationSounds, ComeInTheOrderOfTheBundleAndTheirNamesSorted) {
  SoundWorld world;
  FakeAudioDevices devices;
  FakeSounds player{devices};
  FakeWorkers workers;
  ListingBundles bundles;
  bundles.listing = {"/R/Zoo.wav", "/R/Done.aiff", "/R/notes.txt", "/R/apple.mp3", "/R/SoundOfSilence.aiff"};
  SoundExtensions sounds{{.sounds = player,
                          .devices = devices,
                          .searchPaths = world.searchPaths,
                          .files = world.files,
                          .bundles = bundles,
                          .defaults = world.defaults,
                          .versions = world.versions,
                          .workers = workers,
                          .clock = world.clock,
                          .log = world.log,
                          .userID = 1000}};
  EXPECT_EQ(sounds.applicationSoundFiles(),
            (Texts{"/R/Zoo.wav", "/R/Done.aiff", "/R/apple.mp3", "/R/SoundOfSilence.aiff"}));
  EXPECT_EQ(sounds.applicationSounds(), (Texts{"Done", "Zoo", "apple"}))
      << "capitals sort before small letters";
}

using SoundLookup = SoundFilesTest;

TEST_F(SoundLookup, ApplicationSoundsKeepANameThatHasTwoExtensionsTwice) {
  world.addApplicationSound("Done.aiff");
  world.addApplicationSound("Done.wav");
  world.addApplicationSound("Alert.wav");
  EXPECT_EQ(sounds.applicationSounds(), (Texts{"Alert", "Done", "Done"}));
}

TEST_F(SoundLookup, ApplicationSoundsNeverContainSoundOfSilence) {
  const Text path = world.addApplicationSound("SoundOfSilence.aiff");
  world.addApplicationSound("soundofsilence.aiff");
  EXPECT_EQ(sounds.applicationSounds(), Texts{"soundofsilence"}) << "only that exact name is hidden";
  EXPECT_EQ(sounds.pathOfSound("SoundOfSilence"), path) << "but it can be found";
}

TEST_F(SoundLookup, NoApplicationSoundsWithoutResources) {
  EXPECT_TRUE(sounds.applicationSoundFiles().empty());
  EXPECT_TRUE(sounds.applicationSounds().empty());
}

TEST_F(SoundLookup, SystemSoundFilesComeFolderByFolder) {
  world.files.addFile("/usr/share/sounds/share.wav");
  world.files.addFile("/home/anna/.local/share/sounds/data.wav");
  world.files.addFile("/home/anna/Library/Sounds/own.wav");
  world.files.addFile("/Library/Sounds/all.wav");
  world.files.addFile("/System/Library/Sounds/system.aiff");
  EXPECT_EQ(sounds.systemSoundFiles(),
            (Texts{"/System/Library/Sounds/system.aiff", "/Library/Sounds/all.wav",
                   "/home/anna/Library/Sounds/own.wav", "/home/anna/.local/share/sounds/data.wav",
                   "/usr/share/sounds/share.wav"}));
}

TEST_F(SoundLookup, AUserSoundFolderThatDoesNotExistIsSkipped) {
  world.files.addFile("/System/Library/Sounds/Basso.aiff");
  world.files.addFile("/Library/Sounds/Bell.wav");
  ASSERT_FALSE(world.files.fileExists("/home/anna/Library/Sounds"));
  EXPECT_EQ(sounds.systemSoundFiles(),
            (Texts{"/System/Library/Sounds/Basso.aiff", "/Library/Sounds/Bell.wav"}));
  EXPECT_TRUE(world.log.lines().empty());
}

TEST_F(SoundLookup, AFileInThePlaceOfASoundFolderIsSkipped) {
  world.files.addFile("/Library/Sounds", "not a folder");
  world.files.addFile("/System/Library/Sounds/Basso.aiff");
  EXPECT_EQ(sounds.systemSoundFiles(), Texts{"/System/Library/Sounds/Basso.aiff"});
}

TEST_F(SoundLookup, AFolderThatCannotBeReadIsSkipped) {
  world.files.addFile("/Library/Sounds/Bell.wav");
  world.files.addFile("/System/Library/Sounds/Basso.aiff");
  world.files.node("/Library/Sounds")->isReadable = false;
  EXPECT_EQ(sounds.systemSoundFiles(), Texts{"/System/Library/Sounds/Basso.aiff"});
}

TEST_F(SoundLookup, SubfoldersAreNotSearched) {
  world.files.addFile("/Library/Sounds/More/Bell.wav");
  world.files.addFile("/Library/Sounds/Bell.txt");
  EXPECT_TRUE(sounds.systemSoundFiles().empty());
}

TEST_F(SoundLookup, AFolderNamedAsASoundCountsAsOne) {
  // KEEP: entries are judged by their names alone.
  world.files.addFolder("/Library/Sounds/Bell.wav");
  EXPECT_EQ(sounds.systemSoundFiles(), Texts{"/Library/Sounds/Bell.wav"});
  EXPECT_EQ(sounds.soundNamed("Bell"), nullptr) << "there is nothing in it to play";
}

TEST_F(SoundLookup, SystemSoundsListEachNameOnceAndSorted) {
  world.files.addFile("/System/Library/Sounds/Basso.aiff");
  world.files.addFile("/System/Library/Sounds/Tink.aiff");
  world.files.addFile("/Library/Sounds/Basso.wav");
  world.files.addFile("/Library/Sounds/apple.wav");
  world.files.addFile("/home/anna/Library/Sounds/Basso.aiff");
  EXPECT_EQ(sounds.systemSounds(), (Texts{"Basso", "Tink", "apple"}));
}

TEST_F(SoundLookup, ASoundOfTheApplicationHidesTheSystemOneOfTheSameName) {
  world.files.addFile("/System/Library/Sounds/Done.aiff");
  const Text own = world.addApplicationSound("Done.wav");
  EXPECT_EQ(sounds.pathOfSound("Done"), own);
}

TEST_F(SoundLookup, TheFirstFolderWithTheNameWins) {
  struct Step {
    const char* added;
    const char* why;
  };
  // Each one hides all that came before it.
  for (const Step& step :
       {Step{"/usr/share/sounds/Done.wav", "the last resort"},
        {"/home/anna/.local/share/sounds/Done.wav", "the person's data before the machine's"},
        {"/home/anna/Library/Sounds/Done.wav", "the given folders before the desktop's"},
        {"/Library/Sounds/Done.wav", "the machine's before the person's"},
        {"/System/Library/Sounds/Done.wav", "the system's before all"}}) {
    world.files.addFile(step.added);
    EXPECT_EQ(sounds.pathOfSound("Done"), Text(step.added)) << step.why;
  }
}

TEST_F(SoundLookup, NamesAreMatchedExactly) {
  world.files.addFile("/Library/Sounds/Done.wav");
  EXPECT_EQ(sounds.pathOfSound("done"), std::nullopt);
  EXPECT_EQ(sounds.pathOfSound("Done.wav"), std::nullopt);
  EXPECT_EQ(sounds.pathOfSound("Don"), std::nullopt);
  EXPECT_EQ(sounds.pathOfSound(""), std::nullopt);
  EXPECT_EQ(sounds.pathOfSound("Done"), Text("/Library/Sounds/Done.wav"));
}

TEST_F(SoundLookup, NamesMayHoldPointsBlanksAndBytesThatAreNotUtf8) {
  const std::string strange = "A b.c\n\xE4";
  world.files.addFile("/Library/Sounds/" + strange + ".wav");
  EXPECT_EQ(sounds.systemSounds(), Texts{Text(strange)});
  EXPECT_EQ(sounds.pathOfSound(strange), Text("/Library/Sounds/" + strange + ".wav"));
}

TEST_F(SoundLookup, EachCallListsAnew) {
  EXPECT_EQ(sounds.pathOfSound("Done"), std::nullopt);
  world.files.addFile("/Library/Sounds/Done.wav");
  EXPECT_EQ(sounds.pathOfSound("Done"), Text("/Library/Sounds/Done.wav"));
}

using SoundNamed = SoundFilesTest;

TEST_F(SoundNamed, IsTheSoundInTheFoundFile) {
  const Text path = world.addApplicationSound("Done.aiff", "FORM");
  const SoundPointer sound = sounds.soundNamed("Done");
  ASSERT_NE(sound, nullptr);
  EXPECT_EQ(sound->description(), path);
}

TEST_F(SoundNamed, IsNothingAndSilentAboutItWhenThereIsNoneThatPlays) {
  world.addApplicationSound("Empty.wav", "");
  world.addApplicationSound("Broken.wav", "?");
  const Text gone = world.addApplicationSound("Gone.wav");
  world.files.take(gone.bytes());
  for (const char* name : {"Empty", "Broken", "Gone", "Unknown"})
    EXPECT_EQ(sounds.soundNamed(name), nullptr) << name;
  EXPECT_TRUE(world.log.lines().empty());
}

TEST_F(SoundNamed, IsNothingInAFileOfMoreThan64Mebibytes) {
  world.addApplicationSound("Long.aiff", "FORM" + std::string((64U << 20) - 4, ' '));
  world.addApplicationSound("TooLong.aiff", "FORM" + std::string((64U << 20) - 3, ' '));
  EXPECT_NE(sounds.soundNamed("Long"), nullptr);
  EXPECT_EQ(sounds.soundNamed("TooLong"), nullptr);
}

TEST_F(SoundNamed, SaysWhyNotWhenSoundLogIsOn) {
  world.setSoundLog();
  world.addApplicationSound("Empty.wav", "");
  const Text gone = world.addApplicationSound("Gone.wav");
  world.files.take(gone.bytes());
  for (const char* name : {"Empty", "Gone", "Unknown"}) EXPECT_EQ(sounds.soundNamed(name), nullptr) << name;
  const std::string folder = "/Applications/Installer.app/Contents/Resources/";
  EXPECT_EQ(world.log.lines(),
            (std::vector<std::string>{
                "+SL: sound " + folder + "Empty.wav cannot be played: the file is empty",
                "+SL: sound " + folder + "Gone.wav cannot be read", "+SL: no sound named Unknown"}));
}

}  // namespace
}  // namespace halvorn
