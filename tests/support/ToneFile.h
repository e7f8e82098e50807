// Sound files of a single tone, made in memory.
#pragma once

#include <cmath>
#include <cstdint>
#include <string>

namespace halvorn {

struct Tone {
  double seconds = 0.25;
  double amplitude = 0.5;
  double frequency = 1000.0;
  int samplesPerSecond = 48000;
  int channels = 1;
};

inline void appendLittleEndian(std::string& bytes, std::uint32_t value, int count) {
  for (int index = 0; index < count; ++index)
    bytes.push_back(static_cast<char>(value >> (8 * index) & 0xFFU));
}

// A WAVE file with samples of 16 bits.
[[nodiscard]] inline std::string waveFile(const Tone& tone = {}) {
  const int frames = static_cast<int>(tone.seconds * tone.samplesPerSecond);
  std::string samples;
  for (int frame = 0; frame < frames; ++frame) {
    const double angle = 2.0 * 3.14159265358979 * tone.frequency * frame / tone.samplesPerSecond;
    const auto sample = static_cast<std::int32_t>(std::lround(tone.amplitude * 32767.0 * std::sin(angle)));
    for (int channel = 0; channel < tone.channels; ++channel) {
      appendLittleEndian(samples, static_cast<std::uint32_t>(sample), 2);
    }
  }
  const auto rate = static_cast<std::uint32_t>(tone.samplesPerSecond);
  const auto frameSize = static_cast<std::uint32_t>(2 * tone.channels);
  const auto size = static_cast<std::uint32_t>(samples.size());
  std::string file = "RIFF";
  appendLittleEndian(file, 36 + size, 4);
  file += "WAVEfmt ";
  appendLittleEndian(file, 16, 4);
  appendLittleEndian(file, 1, 2);
  appendLittleEndian(file, static_cast<std::uint32_t>(tone.channels), 2);
  appendLittleEndian(file, rate, 4);
  appendLittleEndian(file, rate * frameSize, 4);
  appendLittleEndian(file, frameSize, 2);
  appendLittleEndian(file, 16, 2);
  file += "data";
  appendLittleEndian(file, size, 4);
  return file + samples;
}

}  // namespace halvorn
