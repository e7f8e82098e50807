#include "Platform/sound/linux/PulsePlayback.h"

#include <algorithm>
#include <memory>

#include "Platform/sound/linux/PulseSession.h"

namespace halvorn {
namespace {

constexpr std::size_t kFramesAtOnce = 4096;
// No server holds more seconds of sound that it has taken but not played.
constexpr double kLongestBuffer = 60.0;

struct FreeStream {
  void operator()(pa_stream* stream) const {
    pa_stream_disconnect(stream);
    pa_stream_unref(stream);
  }
};
using Stream = std::unique_ptr<pa_stream, FreeStream>;

struct FreeProperties {
  void operator()(pa_proplist* properties) const { pa_proplist_free(properties); }
};

pa_sample_spec sampleSpec(const SoundDecoder& decoder) {
  pa_sample_spec spec = {};
  spec.format = PA_SAMPLE_FLOAT32NE;
  spec.rate = static_cast<std::uint32_t>(std::max(decoder.samplesPerSecond(), 0));
  spec.channels = static_cast<std::uint8_t>(std::clamp(decoder.channels(), 0, 255));
  return spec;
}

Stream connectedStream(PulseSession& session, const PulsePlayback& sound, const pa_sample_spec& spec) {
  const std::unique_ptr<pa_proplist, FreeProperties> properties(pa_proplist_new());
  // The role makes the server apply the person's volume, mute and device for event sounds.
  pa_proplist_sets(properties.get(), PA_PROP_MEDIA_ROLE, "event");
  const std::string name = sound.name.bytes();
  pa_channel_map map = {};
  pa_channel_map_init_extend(&map, spec.channels, PA_CHANNEL_MAP_WAVEEX);
  Stream stream(pa_stream_new_with_proplist(session.context(), name.c_str(), &spec, &map, properties.get()));
  if (!stream) return nullptr;
  const std::string device = sound.device.value_or(Text()).bytes();
  // No volume is passed: it would take the place of the person's own, and some servers ignore it.
  const int status = pa_stream_connect_playback(stream.get(), sound.device ? device.c_str() : nullptr,
                                                nullptr, PA_STREAM_NOFLAGS, nullptr, nullptr);
  if (status < 0) return nullptr;
  const auto isSettled = [&] { return pa_stream_get_state(stream.get()) != PA_STREAM_CREATING; };
  if (!session.waitUntil(isSettled) || pa_stream_get_state(stream.get()) != PA_STREAM_READY) return nullptr;
  return stream;
}

bool isReady(const Stream& stream) { return pa_stream_get_state(stream.get()) == PA_STREAM_READY; }

// False when the stream failed.
bool write(PulseSession& session, const Stream& stream, const std::vector<float>& samples,
           std::size_t frameSize, double standstill) {
  const char* next = reinterpret_cast<const char*>(samples.data());
  std::size_t left = samples.size() * sizeof(float);
  while (left > 0) {
    session.giveTime(standstill);
    const auto hasRoom = [&] {
      return !isReady(stream) || pa_stream_writable_size(stream.get()) >= frameSize;
    };
    if (!session.waitUntil(hasRoom) || !isReady(stream)) return false;
    const std::size_t room = pa_stream_writable_size(stream.get());
    const std::size_t count = std::min(left, room - room % frameSize);
    if (pa_stream_write(stream.get(), next, count, nullptr, 0, PA_SEEK_RELATIVE) < 0) return false;
    next += count;
    left -= count;
  }
  return true;
}

// Waits until the last sample has been heard.
void drain(PulseSession& session, const Stream& stream, double seconds) {
  session.giveTime(seconds);
  pa_operation* operation = pa_stream_drain(stream.get(), nullptr, nullptr);
  static_cast<void>(session.finish(operation));
}

}  // namespace

bool canPlay(const SoundDecoder& decoder) {
  const pa_sample_spec spec = sampleSpec(decoder);
  return pa_sample_spec_valid(&spec) != 0;
}

void PulsePlayback::run(PulseServer& server) const {
  const auto opened = SoundDecoder::open(bytes, extension);
  const auto* decoder = std::get_if<std::unique_ptr<SoundDecoder>>(&opened);
  if (!decoder || !canPlay(**decoder)) return;
  const double standstill = server.limits().standstill;
  PulseSession session(server, standstill);
  if (!session.connect()) return;
  const pa_sample_spec spec = sampleSpec(**decoder);
  const Stream stream = connectedStream(session, *this, spec);
  if (!stream) return;

  double secondsWritten = 0.0;
  while (true) {
    std::vector<float> samples = (*decoder)->read(kFramesAtOnce);
    if (samples.empty()) break;
    for (float& sample : samples) sample *= volume;
    if (!write(session, stream, samples, pa_frame_size(&spec), standstill)) return;
    secondsWritten += static_cast<double>(samples.size()) / spec.channels / spec.rate;
  }
  if (secondsWritten > 0) drain(session, stream, std::min(secondsWritten, kLongestBuffer) + standstill);
}

}  // namespace halvorn
