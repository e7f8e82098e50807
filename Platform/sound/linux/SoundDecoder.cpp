#include "Platform/sound/linux/SoundDecoder.h"

#include <sndfile.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <utility>

#include "Core/Format.h"

namespace halvorn {

// The bytes as libsndfile reads them: with a position, like a file.
struct SoundDecoder::Source {
  explicit Source(SoundBytes data) : bytes(std::move(data)) {}

  static sf_count_t length(void* self) { return of(self).size(); }
  static sf_count_t tell(void* self) { return of(self).position; }
  static sf_count_t seek(sf_count_t offset, int whence, void* self);
  static sf_count_t read(void* target, sf_count_t count, void* self);

  // True when libsndfile can read the bytes; `format` names the encoding of bare samples, or is all 0.
  bool openAs(const SF_INFO& format);

  [[nodiscard]] sf_count_t size() const { return static_cast<sf_count_t>(bytes->size()); }
  static Source& of(void* self) { return *static_cast<Source*>(self); }

  struct Close {
    void operator()(SNDFILE* opened) const { sf_close(opened); }
  };

  SoundBytes bytes;
  sf_count_t position = 0;
  SF_INFO info = {};
  std::unique_ptr<SNDFILE, Close> file;  // after what it reads from
};

sf_count_t SoundDecoder::Source::seek(sf_count_t offset, int whence, void* self) {
  Source& source = of(self);
  const sf_count_t base = whence == SEEK_SET ? 0 : whence == SEEK_CUR ? source.position : source.size();
  // Damaged headers make libsndfile ask for places outside the file.
  if (offset < -base || offset > source.size() - base) return -1;
  source.position = base + offset;
  return source.position;
}

sf_count_t SoundDecoder::Source::read(void* target, sf_count_t count, void* self) {
  Source& source = of(self);
  const sf_count_t available = std::clamp<sf_count_t>(count, 0, source.size() - source.position);
  std::memcpy(target, source.bytes->data() + source.position, static_cast<std::size_t>(available));
  source.position += available;
  return available;
}

bool SoundDecoder::Source::openAs(const SF_INFO& format) {
  SF_VIRTUAL_IO access = {&length, &seek, &read, nullptr, &tell};
  position = 0;
  info = format;
  file.reset(sf_open_virtual(&access, SFM_READ, &info, this));
  return file != nullptr;
}

namespace {

SF_INFO bareSamples(const Text& extension) {
  SF_INFO format = {};
  const bool isMuLaw = extension == Text("ulw") || extension == Text("ULW") || extension == Text("'ULAW'");
  if (!isMuLaw && extension != Text("'ALAW'")) return format;
  format.format = SF_FORMAT_RAW | (isMuLaw ? SF_FORMAT_ULAW : SF_FORMAT_ALAW);
  format.samplerate = 8000;
  format.channels = 1;
  return format;
}

// Floating-point files can hold anything, also what would be heard as a bang.
float tamed(float sample) { return std::isfinite(sample) ? std::clamp(sample, -1.0F, 1.0F) : 0.0F; }

}  // namespace

std::variant<std::unique_ptr<SoundDecoder>, SoundDecoder::Problem> SoundDecoder::open(const SoundBytes& bytes,
                                                                                      const Text& extension) {
  if (bytes->empty()) return Problem{"the file is empty"};
  auto source = std::make_unique<Source>(bytes);
  if (!source->openAs({})) {
    const int error = sf_error(nullptr);
    const Text explanation = sf_strerror(nullptr);
    if (error == SF_ERR_MALFORMED_FILE) return Problem{format("the file is damaged (%@)", explanation)};
    const SF_INFO bare = bareSamples(extension);
    if (error != SF_ERR_UNRECOGNISED_FORMAT || bare.format == 0 || !source->openAs(bare)) {
      return Problem{format("no kind of sound that can be played here (%@)", explanation)};
    }
  }
  if (source->info.frames <= 0) return Problem{"the file holds no sound"};
  return std::unique_ptr<SoundDecoder>(new SoundDecoder(std::move(source)));
}

SoundDecoder::SoundDecoder(std::unique_ptr<Source> source) : source_(std::move(source)) {}

SoundDecoder::~SoundDecoder() = default;

int SoundDecoder::channels() const { return source_->info.channels; }

int SoundDecoder::samplesPerSecond() const { return source_->info.samplerate; }

double SoundDecoder::seconds() const {
  return static_cast<double>(source_->info.frames) / std::max(source_->info.samplerate, 1);
}

std::vector<float> SoundDecoder::read(std::size_t frames) {
  const auto perFrame = static_cast<std::size_t>(channels());
  std::vector<float> samples(frames * perFrame);
  const sf_count_t count =
      sf_readf_float(source_->file.get(), samples.data(), static_cast<sf_count_t>(frames));
  samples.resize(static_cast<std::size_t>(std::max<sf_count_t>(count, 0)) * perFrame);
  std::transform(samples.begin(), samples.end(), samples.begin(), tamed);
  return samples;
}

}  // namespace halvorn
