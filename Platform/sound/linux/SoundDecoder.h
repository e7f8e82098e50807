// Sound files in memory, read piece by piece.
//
// What a file is decides its content, not its name: AIFF, AIFC, WAVE, AU and MPEG among others.
// Only a file that is nothing else and is named as mu-law or A-law is taken for bare samples at
// 8000 Hz, as such files have no header.
//
// Thread: one.
// Why: docs/decisions/023-sound-files.md
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <variant>
#include <vector>

#include "Core/Text.h"

namespace halvorn {

using SoundBytes = std::shared_ptr<const std::string>;

class SoundDecoder {
 public:
  struct Problem {
    Text reason;
  };
  // The extension is that of the file's name.
  [[nodiscard]] static std::variant<std::unique_ptr<SoundDecoder>, Problem> open(const SoundBytes& bytes,
                                                                                 const Text& extension);
  ~SoundDecoder();
  SoundDecoder(const SoundDecoder&) = delete;
  SoundDecoder& operator=(const SoundDecoder&) = delete;

  [[nodiscard]] int channels() const;
  [[nodiscard]] int samplesPerSecond() const;
  // As the header tells it.
  [[nodiscard]] double seconds() const;

  // The next samples of all channels in turn, at most that many of each, from -1 to 1 whatever the file says;
  // empty at the end and where the file is damaged.
  [[nodiscard]] std::vector<float> read(std::size_t frames);

 private:
  struct Source;
  explicit SoundDecoder(std::unique_ptr<Source> source);

  std::unique_ptr<Source> source_;
};

}  // namespace halvorn
