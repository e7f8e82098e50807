#include "Platform/sound/linux/SoundDecoder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <random>

#include "tests/support/SoundData.h"
#include "tests/support/ToneFile.h"

namespace halvorn {
namespace {

struct Opened {
  std::unique_ptr<SoundDecoder> decoder;
  std::string problem;
};

Opened open(const std::string& bytes, const Text& extension = "wav") {
  auto result = SoundDecoder::open(std::make_shared<const std::string>(bytes), extension);
  if (auto* problem = std::get_if<SoundDecoder::Problem>(&result)) return {nullptr, problem->reason.bytes()};
  return {std::move(std::get<std::unique_ptr<SoundDecoder>>(result)), ""};
}

std::vector<float> readAll(SoundDecoder& decoder) {
  std::vector<float> all;
  // Bounded, so that a decoder without an end fails the test and does not hang it.
  for (int piece = 0; piece < 10000; ++piece) {
    const std::vector<float> samples = decoder.read(1000);
    if (samples.empty()) return all;
    all.insert(all.end(), samples.begin(), samples.end());
  }
  ADD_FAILURE() << "the sound has no end";
  return all;
}

float peakOf(const std::vector<float>& samples) {
  float peak = 0.0F;
  for (const float sample : samples) peak = std::max(peak, std::fabs(sample));
  return peak;
}

TEST(SoundDecoder, ReadsEveryKindThatThisSystemCanDecode) {
  struct Case {
    const char* file;
    const char* extension;
    int channels;
    int rate;
    double seconds;
    const char* why;
  };
  for (const Case& test : {
           Case{"tone.aiff", "aiff", 1, 8000, 0.1, "AIFF"},
           {"tone.aifc", "AIFC", 1, 8000, 0.1, "AIFC"},
           {"tone.wav", "WAV", 1, 8000, 0.1, "WAVE"},
           {"tone-stereo.wav", "wav", 2, 22050, 0.1, "24 bits, two channels"},
           {"tone.au", "au", 1, 8000, 0.1, "AU"},
           {"tone-mulaw.snd", "snd", 1, 8000, 0.1, "AU with mu-law under its other name"},
           {"tone.mp3", "mp3", 1, 16000, 0.2, "MPEG"},
           {"tone.mp3", "'Mp3 '", 1, 16000, 0.2, "MPEG under its file-type code"},
           {"tone.ulw", "ulw", 1, 8000, 0.1, "bare mu-law"},
           {"tone.ulw", "'ULAW'", 1, 8000, 0.1, "bare mu-law under its file-type code"},
           {"tone.al", "'ALAW'", 1, 8000, 0.1, "bare A-law"},
           {"tone-mulaw.snd", "ulw", 1, 8000, 0.1, "what has a header is read by its header"},
           {"tone.aiff", "mp3", 1, 8000, 0.1, "the content decides, not the name"},
       }) {
    const Opened opened = open(soundData(test.file), test.extension);
    ASSERT_NE(opened.decoder, nullptr) << test.why << ": " << opened.problem;
    EXPECT_EQ(opened.decoder->channels(), test.channels) << test.why;
    EXPECT_EQ(opened.decoder->samplesPerSecond(), test.rate) << test.why;
    // MPEG comes in whole frames, with some silence before and after.
    const double tolerance = std::string(test.file) == "tone.mp3" ? 0.15 : 1e-6;
    EXPECT_NEAR(opened.decoder->seconds(), test.seconds, tolerance) << test.why;
    const std::vector<float> samples = readAll(*opened.decoder);
    const double length = static_cast<double>(samples.size()) / test.channels / test.rate;
    EXPECT_NEAR(length, opened.decoder->seconds(), 1e-6) << test.why;
    EXPECT_NEAR(peakOf(samples), 0.5, 0.03) << test.why;
  }
}

TEST(SoundDecoder, ReadsTheShippedSounds) {
  const Opened done = open(shippedSound("Done.aiff"));
  ASSERT_NE(done.decoder, nullptr) << done.problem;
  EXPECT_GT(peakOf(readAll(*done.decoder)), 0.3F);
  const Opened silence = open(shippedSound("SoundOfSilence.aiff"));
  ASSERT_NE(silence.decoder, nullptr) << silence.problem;
  EXPECT_GT(silence.decoder->seconds(), 0.1);
  EXPECT_EQ(peakOf(readAll(*silence.decoder)), 0.0F);
}

TEST(SoundDecoder, SaysWhyAFileCannotBePlayed) {
  const std::string wave = waveFile();
  struct Case {
    std::string bytes;
    const char* extension;
    std::string begins;
    const char* why;
  };
  for (const Case& test : {
           Case{"", "wav", "the file is empty", "an empty file"},
           {"", "ulw", "the file is empty", "an empty file without header"},
           {"This is a letter and no sound.", "aiff", "no kind of sound that can be played here", "a text"},
           {soundData("tone.m4a"), "m4a", "no kind of sound that can be played here",
            "no decoder for it here"},
           {soundData("tone.ulw"), "wav", "no kind of sound that can be played here",
            "bare samples under another name"},
           {std::string(1000, '\0'), "wav", "no kind of sound that can be played here", "zeros"},
           {waveFile({.seconds = 0.0}), "wav", "the file holds no sound", "a header and no samples"},
           {wave.substr(0, 44), "wav", "the file holds no sound", "cut off after its header"},
       }) {
    const Opened opened = open(test.bytes, test.extension);
    EXPECT_EQ(opened.decoder, nullptr) << test.why;
    EXPECT_EQ(opened.problem.substr(0, test.begins.size()), test.begins) << test.why;
  }
}

TEST(SoundDecoder, AFileCutOffInItsHeaderIsNoSound) {
  const std::string wave = waveFile();
  const std::string aiff = soundData("tone.aiff");
  for (std::size_t length = 1; length < 44; ++length) {
    EXPECT_EQ(open(wave.substr(0, length)).decoder, nullptr) << length;
    EXPECT_EQ(open(aiff.substr(0, length)).decoder, nullptr) << length;
  }
}

TEST(SoundDecoder, AFileCutOffInItsSamplesPlaysAsFarAsItGoes) {
  const std::string wave = waveFile({.seconds = 0.1});
  const Opened opened = open(wave.substr(0, 44 + 2 * 1000));
  ASSERT_NE(opened.decoder, nullptr) << opened.problem;
  EXPECT_EQ(readAll(*opened.decoder).size(), 1000U);
}

TEST(SoundDecoder, TamesSamplesThatAreNoNumbersOrTooLoud) {
  const float samples[] = {0.25F,
                           std::numeric_limits<float>::quiet_NaN(),
                           std::numeric_limits<float>::infinity(),
                           -std::numeric_limits<float>::infinity(),
                           1e30F,
                           -2.0F};
  std::string file = waveFile({.seconds = static_cast<double>(2 * std::size(samples)) / 48000.0});
  file[20] = 3;   // floating point
  file[34] = 32;  // bits
  file[32] = 4;   // bytes of a frame
  std::memcpy(file.data() + 44, samples, sizeof samples);
  const Opened opened = open(file);
  ASSERT_NE(opened.decoder, nullptr) << opened.problem;
  EXPECT_EQ(readAll(*opened.decoder), (std::vector<float>{0.25F, 0.0F, 0.0F, 0.0F, 1.0F, -1.0F}));
}

TEST(SoundDecoder, SurvivesDamageOfEveryKind) {
  std::mt19937 random(20260301);
  int playable = 0;
  for (const char* name : {"tone.aiff", "tone.aifc", "tone.wav", "tone-mulaw.snd", "tone.mp3"}) {
    const std::string whole = soundData(name);
    for (int round = 0; round < 200; ++round) {
      std::string damaged = whole;
      for (int hit = 0; hit < 4; ++hit)
        damaged[random() % std::min<std::size_t>(damaged.size(), 100)] = static_cast<char>(random());
      const Opened opened = open(damaged);
      if (!opened.decoder) {
        EXPECT_FALSE(opened.problem.empty()) << name;
        continue;
      }
      ++playable;
      EXPECT_LE(peakOf(readAll(*opened.decoder)), 1.0F) << name;
    }
  }
  EXPECT_GT(playable, 0) << "some damage is not worth refusing the sound for";
}

}  // namespace
}  // namespace halvorn
