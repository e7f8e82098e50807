// Sounds as they come out of the machine: everything is real but the files and settings,
// and what a sink plays is recorded.
#include <gtest/gtest.h>

#include <cmath>
#include <csignal>
#include <future>

#include "Platform/running/posix/PosixClock.h"
#include "Platform/sound/linux/PulseAudioDevices.h"
#include "Platform/sound/linux/PulseServer.h"
#include "Platform/sound/linux/PulseSounds.h"
#include "Sources/CompletionSound.h"
#include "tests/fakes/FakeMainThread.h"
#include "tests/fakes/SoundWorld.h"
#include "tests/support/SoundData.h"
#include "tests/support/SoundServer.h"
#include "tests/support/ToneFile.h"
#include "tests/support/WaitingWorkers.h"

namespace halvorn {
namespace {

using Lines = std::vector<std::string>;
using Kind = SoundServer::Kind;

// The program's sound, from the files to the server.
struct SoundProgram {
  explicit SoundProgram(const PulseLimits& limits = {}) : server(clock, "Sound test", limits) {}

  // Plays the program's sound "Tone" and waits for its end.
  void playTone() {
    const SoundPointer tone = effects.soundNamed("Tone");
    ASSERT_NE(tone, nullptr);
    tone->setVolume(effects.alertVolume());
    effects.playAsSoundEffect(*tone);
    ASSERT_TRUE(eventually([&] { return !tone->isPlaying(); }));
  }

  SoundWorld world;
  PosixClock clock;
  WaitingWorkers workers;
  PulseServer server;
  PulseSounds sounds{server, workers};
  PulseAudioDevices devices{server};
  SoundExtensions effects{world.services(sounds, devices, workers)};
  CompletionSound completionSound{effects};
};

constexpr double kToneAmplitude = 0.5;

// "within 1 dB"
void expectLevel(double measured, double expected, const std::string& what) {
  ASSERT_GT(measured, 0.0) << what;
  EXPECT_NEAR(20.0 * std::log10(measured / expected), 0.0, 1.0)
      << what << ": " << measured << " instead of " << expected;
}

class SoundEffectTest : public testing::TestWithParam<Kind> {
 protected:
  void SetUp() override {
    if (const auto missing = SoundServer::missing(GetParam())) GTEST_SKIP() << *missing;
    soundServer = std::make_unique<SoundServer>(GetParam());
    speakers = std::make_unique<SoundRecording>(*soundServer, "lab_a");
    headphones = std::make_unique<SoundRecording>(*soundServer, "lab_b");
    program = std::make_unique<SoundProgram>();
    program->world.addApplicationSound("Tone.wav", waveFile({.seconds = 0.1, .amplitude = kToneAmplitude}));
  }
  void forgetRecordings() {
    speakers->clear();
    headphones->clear();
  }

  std::unique_ptr<SoundServer> soundServer;
  std::unique_ptr<SoundRecording> speakers;
  std::unique_ptr<SoundRecording> headphones;
  std::unique_ptr<SoundProgram> program;  // ends before what it uses
};

TEST_P(SoundEffectTest, TheCompletionSoundComesOutOfTheChosenDeviceAndOfNoOther) {
  program->world.addApplicationSound("Done.aiff", shippedSound("Done.aiff"));
  program->world.setBeepVolume(0.61);
  soundServer->setEventSettings({.device = "lab_b"});
  program->completionSound.play(Text("YES"));
  // All of it: the last note has died away after 0.8 seconds.
  ASSERT_TRUE(eventually([&] { return headphones->loudSeconds() > 0.7; }));
  expectLevel(headphones->peak(), 0.4948 * 0.5, "the greatest amplitude of the shipped sound, halved");
  EXPECT_EQ(speakers->peak(), 0.0);
}

TEST_P(SoundEffectTest, TheLevelIsTheOneThatAlertVolumeGives) {
  for (const double setting : {0.41, 0.47, 0.61, 0.78, 1.0}) {
    program->world.setBeepVolume(setting);
    forgetRecordings();
    program->playTone();
    const float volume = SoundExtensions::alertVolumeForBeepVolume(setting);
    expectLevel(speakers->peak(), kToneAmplitude * volume, "setting " + std::to_string(setting));
    EXPECT_EQ(headphones->peak(), 0.0);
  }
}

TEST_P(SoundEffectTest, AnAlertVolumeOfZeroIsSilence) {
  program->world.setBeepVolume(0.35);
  program->playTone();
  EXPECT_EQ(speakers->peak(), 0.0);
}

TEST_P(SoundEffectTest, ThePersonsEventVolumeHolds) {
  for (const double volume : {1.0, 0.5, 0.1}) {
    soundServer->setEventSettings({.volume = volume});
    forgetRecordings();
    program->playTone();
    expectLevel(speakers->peak(), kToneAmplitude * volume, "event volume " + std::to_string(volume));
  }
  program->world.setBeepVolume(0.61);
  soundServer->setEventSettings({.volume = 0.5});
  forgetRecordings();
  program->playTone();
  expectLevel(speakers->peak(), kToneAmplitude * 0.5 * 0.5, "alert volume within the event volume");
}

TEST_P(SoundEffectTest, ThePersonsEventMuteHolds) {
  soundServer->setEventSettings({.isMuted = true});
  program->playTone();
  EXPECT_EQ(speakers->peak(), 0.0);
  soundServer->setEventSettings({.isMuted = false});
  program->playTone();
  expectLevel(speakers->peak(), kToneAmplitude, "no longer muted");
}

TEST_P(SoundEffectTest, PlayingLeavesThePersonsEventSettingsAlone) {
  soundServer->setEventSettings({.volume = 0.5, .device = "lab_b"});
  program->world.setBeepVolume(0.47);
  program->playTone();
  program->world.setBeepVolume(1.0);
  forgetRecordings();
  program->playTone();
  expectLevel(headphones->peak(), kToneAmplitude * 0.5, "as if nothing had been played before");
  EXPECT_EQ(speakers->peak(), 0.0);
}

TEST_P(SoundEffectTest, WithoutAChoiceTheDefaultDevicePlays) {
  static_cast<void>(soundServer->control({"set-default-sink", "lab_b"}));
  program->playTone();
  expectLevel(headphones->peak(), kToneAmplitude, "the default sink");
  EXPECT_EQ(speakers->peak(), 0.0);
}

TEST_P(SoundEffectTest, AChosenDeviceThatIsGoneLeavesItToTheDefaultDevice) {
  soundServer->setEventSettings({.device = "unplugged"});
  program->playTone();
  expectLevel(speakers->peak(), kToneAmplitude, "the default sink");
  EXPECT_EQ(headphones->peak(), 0.0);
}

// Names a device for the alerts that the server does not know.
class UnpluggedDevices : public PulseAudioDevices {
 public:
  using PulseAudioDevices::PulseAudioDevices;
  OptionalText uid(AudioDeviceID device, AudioScope scope) const override {
    return scope == AudioScope::Output ? OptionalText("unplugged") : PulseAudioDevices::uid(device, scope);
  }
};

TEST_P(SoundEffectTest, ARefusedDeviceFallsBackToTheDefaultOneAndSaysSo) {
  UnpluggedDevices unplugged(program->server);
  SoundExtensions effects(program->world.services(program->sounds, unplugged, program->workers));
  program->world.setSoundLog();
  const SoundPointer tone = effects.soundNamed("Tone");
  ASSERT_NE(tone, nullptr);
  effects.playAsSoundEffect(*tone);
  ASSERT_TRUE(eventually([&] { return !tone->isPlaying(); }));
  expectLevel(speakers->peak(), kToneAmplitude, "the default sink");
  const Lines lines = program->world.log.lines();
  const std::string path = "/Applications/Installer.app/Contents/Resources/Tone.wav";
  ASSERT_EQ(lines.size(), 7U);
  EXPECT_EQ(lines[0], "playAsSoundEffect: " + path);
  EXPECT_EQ(Lines(lines.begin() + 3, lines.end()),
            (Lines{"+SL: soundEffectID=unplugged", "+SL: setPlaybackDeviceIdentifier:unplugged",
                   "+SL: exception no audio device 'unplugged'", "+SL: play self (" + path + ")"}));
}

TEST_P(SoundEffectTest, SoundLogTellsTheRealDevicesAndIsSilentWhenOff) {
  program->playTone();
  EXPECT_TRUE(program->world.log.lines().empty());
  program->world.setSoundLog();
  program->playTone();
  const Lines lines = program->world.log.lines();
  ASSERT_EQ(lines.size(), 6U);
  const bool isPulseAudio = GetParam() == Kind::PulseAudio;
  EXPECT_EQ(lines[1], isPulseAudio ? "   device LabSpeakers by LabWorks id lab_a"
                                   : "   device Lab_lab_a by PipeWire id lab_a");
  EXPECT_EQ(lines[2], isPulseAudio ? "   device LabHeadphones by module-null-sink.c id lab_b"
                                   : "   device Lab_lab_b by PipeWire id lab_b");
  EXPECT_EQ(lines[3], "+SL: soundEffectID=lab_a");
  EXPECT_EQ(lines[4], "+SL: setPlaybackDeviceIdentifier:lab_a");
}

TEST_P(SoundEffectTest, TheWarmUpPlaysOnceAlmostInaudibly) {
  program->world.addApplicationSound("SoundOfSilence.wav", waveFile({.seconds = 0.15, .amplitude = 1.0}));
  program->effects.prepareForSound();
  program->effects.prepareForSound();
  ASSERT_TRUE(eventually([&] { return speakers->loudSeconds() > 0.1; }));
  program->effects.prepareForSound();
  expectLevel(speakers->peak(), 0.01, "the volume of the silent sound");
  EXPECT_LT(speakers->loudSeconds(), 0.16) << "played once";
  EXPECT_EQ(headphones->peak(), 0.0);
}

TEST_P(SoundEffectTest, TheSoundPlaysOnWhenNobodyHoldsItAnyMore) {
  SoundPointer tone = program->effects.soundNamed("Tone");
  ASSERT_NE(tone, nullptr);
  program->effects.playAsSoundEffect(*tone);
  tone.reset();
  EXPECT_TRUE(eventually([&] { return speakers->loudSeconds() > 0.08; }));
}

TEST_P(SoundEffectTest, MixersSeeAnEventSoundOfThisProgram) {
  program->world.addApplicationSound("Long.wav", waveFile({.seconds = 3.0, .samplesPerSecond = 8000}));
  const SoundPointer sound = program->effects.soundNamed("Long");
  ASSERT_NE(sound, nullptr);
  program->effects.playAsSoundEffect(*sound);
  std::string inputs;
  const auto isShown = [&] {
    inputs = soundServer->control({"list", "sink-inputs"});
    return inputs.find("media.name = \"Long\"") != std::string::npos;
  };
  EXPECT_TRUE(eventually(isShown)) << inputs;
  EXPECT_NE(inputs.find("media.role = \"event\""), std::string::npos) << inputs;
  EXPECT_NE(inputs.find("application.name = \"Sound test\""), std::string::npos) << inputs;
}

TEST_P(SoundEffectTest, NothingIsConnectedBeforeASoundIsPlayedNorAfterwards) {
  const int others = soundServer->clients();
  program->world.addApplicationSound("Broken.wav", "no sound");
  EXPECT_NE(program->effects.soundNamed("Tone"), nullptr);
  EXPECT_EQ(program->effects.soundNamed("Broken"), nullptr);
  static_cast<void>(program->effects.alertVolume());
  static_cast<void>(program->effects.systemSounds());
  program->completionSound.play(Text("NO"));
  EXPECT_EQ(soundServer->clients(), others);
  program->playTone();
  EXPECT_TRUE(eventually([&] { return soundServer->clients() == others; }));
}

TEST_P(SoundEffectTest, ADoneSoundThatIsMissingEmptyOrDamagedIsSilence) {
  FakeWorkers workers;  // run here, so that the files can be changed between two sounds
  SoundExtensions effects(program->world.services(program->sounds, program->devices, workers));
  CompletionSound completionSound(effects);
  const std::string aiff = shippedSound("Done.aiff");
  for (const std::string& contents : {std::string(), std::string("no sound"), aiff.substr(0, 40)}) {
    program->world.addApplicationSound("Done.aiff", contents);
    completionSound.play(Text("YES"));
    workers.runAll();
  }
  program->world.bundles.bundles.clear();
  completionSound.play(Text("YES"));
  workers.runAll();
  EXPECT_EQ(speakers->peak(), 0.0);
  EXPECT_TRUE(program->world.log.lines().empty());
}

std::string kindName(const testing::TestParamInfo<Kind>& parameter) {
  return parameter.param == Kind::PulseAudio ? "PulseAudio" : "PipeWire";
}
INSTANTIATE_TEST_SUITE_P(Server, SoundEffectTest, testing::Values(Kind::PulseAudio, Kind::PipeWire),
                         kindName);

// A server that fails. A test that had to wait for one would run into the time limit of all tests.
class FailingServer : public testing::Test {
 protected:
  void SetUp() override {
    if (const auto missing = SoundServer::missing()) GTEST_SKIP() << *missing;
    soundServer = std::make_unique<SoundServer>();
  }
  void startProgram(const PulseLimits& limits) {
    program = std::make_unique<SoundProgram>(limits);
    program->world.addApplicationSound("Done.wav", waveFile({.seconds = 20.0, .samplesPerSecond = 8000}));
  }
  // Plays "Done"; returns when it is heard.
  SoundPointer playAudibly() {
    SoundRecording speakers(*soundServer, "lab_a");
    const SoundPointer sound = program->effects.soundNamed("Done");
    program->effects.playAsSoundEffect(*sound);
    EXPECT_TRUE(eventually([&] { return speakers.loudSeconds() > 0.02; }));
    return sound;
  }

  const PulseLimits forEver = {.question = 600.0, .standstill = 600.0};
  std::unique_ptr<SoundServer> soundServer;
  std::unique_ptr<SoundProgram> program;
};

TEST_F(FailingServer, GoneInMidPlayEndsTheSound) {
  startProgram(forEver);
  const SoundPointer sound = playAudibly();
  soundServer->process().end(SIGKILL);
  EXPECT_TRUE(eventually([&] { return !sound->isPlaying(); }));
  EXPECT_EQ(program->effects.systemAudioDeviceID(), std::nullopt);
  program->effects.playAsSoundEffect(*sound);
  EXPECT_TRUE(eventually([&] { return !sound->isPlaying(); }));
}

TEST_F(FailingServer, AskedToEndInMidPlayEndsTheSound) {
  startProgram(forEver);
  const SoundPointer sound = playAudibly();
  soundServer->process().end(SIGTERM);
  EXPECT_TRUE(eventually([&] { return !sound->isPlaying(); }));
}

TEST_F(FailingServer, DeviceGoneInMidPlayLeavesTheSoundToTheOtherOne) {
  startProgram(forEver);
  SoundRecording headphones(*soundServer, "lab_b");
  const SoundPointer sound = playAudibly();
  static_cast<void>(soundServer->control({"unload-module", "1"}));  // lab_a
  EXPECT_TRUE(eventually([&] { return headphones.loudSeconds() > 0.05; }));
  EXPECT_TRUE(sound->isPlaying());
}

TEST_F(FailingServer, ThatStandsStillInMidPlayIsGivenUp) {
  startProgram({.question = 600.0, .standstill = 0.3});
  const SoundPointer sound = playAudibly();
  soundServer->process().sendSignal(SIGSTOP);
  EXPECT_TRUE(eventually([&] { return !sound->isPlaying(); }));
}

TEST_F(FailingServer, ThatDoesNotAnswerIsNotWaitedForLong) {
  startProgram({.question = 0.2, .standstill = 0.2});
  soundServer->process().sendSignal(SIGSTOP);
  EXPECT_EQ(program->effects.systemAudioDeviceID(), std::nullopt);
  const SoundPointer sound = program->effects.soundNamed("Done");
  ASSERT_NE(sound, nullptr);
  EXPECT_EQ(sound->setPlaybackDeviceIdentifier(Text("lab_a")), Text("the sound server does not answer"));
  EXPECT_TRUE(sound->play());
  EXPECT_TRUE(eventually([&] { return !sound->isPlaying(); }));
}

TEST_F(FailingServer, ThatDoesNotAnswerKeepsNeitherTheInstallationNorItsEndWaiting) {
  startProgram(forEver);
  soundServer->process().sendSignal(SIGSTOP);
  program->completionSound.play(Text("YES"));
  program->effects.prepareForSound();
  std::promise<void> waits;
  program->effects.inBackground([&waits, &effects = program->effects] {
    waits.set_value();
    static_cast<void>(effects.systemAudioDeviceID());
  });
  ASSERT_EQ(waits.get_future().wait_for(std::chrono::duration<double>(kTestPatience)),
            std::future_status::ready);
  const double start = testSeconds();
  program.reset();  // while all of them wait
  EXPECT_LT(testSeconds() - start, kTestPatience) << "ten minutes is what they would wait";
}

TEST_F(FailingServer, ThatStandsStillDoesNotKeepTheEndOfTheProgramWaiting) {
  startProgram(forEver);
  const SoundPointer sound = playAudibly();
  soundServer->process().sendSignal(SIGSTOP);
  program.reset();
  EXPECT_FALSE(sound->isPlaying());
}

TEST_F(FailingServer, TheEndOfTheProgramCutsTheSoundOff) {
  startProgram(forEver);
  const SoundPointer sound = playAudibly();
  program.reset();
  EXPECT_FALSE(sound->isPlaying());
}

TEST_F(FailingServer, ThatIsNotThereMeansSilence) {
  soundServer->process().end();
  startProgram(forEver);
  program->world.setSoundLog();
  program->completionSound.play(Text("YES"));
  program->effects.prepareForSound();
  program->effects.listAudioDevices();
  const std::string last = "+SL: play self (/Applications/Installer.app/Contents/Resources/Done.wav)";
  const auto isThrough = [&] {
    const Lines lines = program->world.log.lines();
    return std::find(lines.begin(), lines.end(), last) != lines.end();
  };
  EXPECT_TRUE(eventually(isThrough));
  EXPECT_EQ(program->effects.systemAudioDeviceID(), std::nullopt);
}

TEST(NoServer, IsStartedForASound) {
  if (!programExists("pulseaudio")) GTEST_SKIP() << "pulseaudio is not installed";
  TemporaryFolder folder;
  // As in a session where libpulse would start a server by itself.
  ::setenv("HOME", folder.path().c_str(), 1);
  ::setenv("XDG_RUNTIME_DIR", folder.path().c_str(), 1);
  ::setenv("XDG_CONFIG_HOME", (folder / "config").c_str(), 1);
  for (const char* name : {"PULSE_SERVER", "PULSE_CLIENTCONFIG", "DISPLAY"}) ::unsetenv(name);
  SoundProgram program;
  program.world.addApplicationSound("Tone.wav", waveFile());
  program.playTone();
  EXPECT_EQ(program.effects.systemAudioDeviceID(), std::nullopt);
  EXPECT_FALSE(std::filesystem::exists(folder / "pulse/native"));
  EXPECT_FALSE(std::filesystem::exists(folder / "pulse/pid"));
}

}  // namespace
}  // namespace halvorn
