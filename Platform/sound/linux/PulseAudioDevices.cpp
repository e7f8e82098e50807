#include "Platform/sound/linux/PulseAudioDevices.h"

#include <pulse/ext-stream-restore.h>

#include <string>

#include "Platform/sound/linux/PulseSession.h"

namespace halvorn {
namespace {

struct Sink {
  AudioDeviceID index = 0;
  std::string name;
  Text description;
  Text maker;
};
using Sinks = std::vector<Sink>;

std::string textOrEmpty(const char* text) { return text ? text : ""; }

void takeSink(pa_context* /*context*/, const pa_sink_info* info, int isLast, void* sinks) {
  if (isLast || !info) return;
  const char* vendor = pa_proplist_gets(info->proplist, PA_PROP_DEVICE_VENDOR_NAME);
  static_cast<Sinks*>(sinks)->push_back({info->index, textOrEmpty(info->name),
                                         Text(textOrEmpty(info->description)),
                                         Text(vendor ? vendor : textOrEmpty(info->driver))});
}

std::optional<Sink> sinkWithIndex(PulseServer& server, AudioDeviceID index) {
  PulseSession session(server, server.limits().question);
  if (!session.connect()) return std::nullopt;
  Sinks sinks;
  if (!session.finish(pa_context_get_sink_info_by_index(session.context(), index, takeSink, &sinks)) ||
      sinks.empty()) {
    return std::nullopt;
  }
  return sinks.front();
}

// nullopt: the server did not answer.
std::optional<Sinks> sinksWithName(PulseSession& session, const std::string& name) {
  Sinks sinks;
  if (!session.finish(pa_context_get_sink_info_by_name(session.context(), name.c_str(), takeSink, &sinks))) {
    return std::nullopt;
  }
  // Numbers and names like "@DEFAULT_SINK@" find sinks that are called otherwise.
  std::erase_if(sinks, [&](const Sink& sink) { return sink.name != name; });
  return sinks;
}

void takeEventDevice(pa_context* /*context*/, const pa_ext_stream_restore_info* info, int isLast,
                     void* device) {
  if (isLast || !info || textOrEmpty(info->name) != "sink-input-by-media-role:event") return;
  *static_cast<std::string*>(device) = textOrEmpty(info->device);
}

void takeDefaultSink(pa_context* /*context*/, const pa_server_info* info, void* device) {
  if (info) *static_cast<std::string*>(device) = textOrEmpty(info->default_sink_name);
}

}  // namespace

std::optional<AudioDeviceID> PulseAudioDevices::defaultSystemOutputDevice() const {
  PulseSession session(server_, server_.limits().question);
  if (!session.connect()) return std::nullopt;
  // Servers without the extension say so, which is the same as no choice.
  std::string chosen;
  static_cast<void>(session.finish(pa_ext_stream_restore_read(session.context(), takeEventDevice, &chosen)));
  std::string standard;
  if (!session.finish(pa_context_get_server_info(session.context(), takeDefaultSink, &standard))) {
    return std::nullopt;
  }
  for (const std::string& name : {chosen, standard}) {
    if (name.empty()) continue;
    const auto sinks = sinksWithName(session, name);
    if (sinks && !sinks->empty()) return sinks->front().index;
  }
  return std::nullopt;
}

std::optional<std::vector<AudioDeviceID>> PulseAudioDevices::devices() const {
  PulseSession session(server_, server_.limits().question);
  if (!session.connect()) return std::nullopt;
  Sinks sinks;
  if (!session.finish(pa_context_get_sink_info_list(session.context(), takeSink, &sinks)))
    return std::nullopt;
  std::vector<AudioDeviceID> indexes;
  for (const Sink& sink : sinks) indexes.push_back(sink.index);
  return indexes;
}

OptionalText PulseAudioDevices::name(AudioDeviceID device) const {
  const auto sink = sinkWithIndex(server_, device);
  return sink ? OptionalText(sink->description) : std::nullopt;
}

OptionalText PulseAudioDevices::manufacturer(AudioDeviceID device) const {
  const auto sink = sinkWithIndex(server_, device);
  return sink ? OptionalText(sink->maker) : std::nullopt;
}

OptionalText PulseAudioDevices::uid(AudioDeviceID device, AudioScope /*scope*/) const {
  // A sink is all output: it has one name for both scopes.
  const auto sink = sinkWithIndex(server_, device);
  return sink ? OptionalText(sink->name) : std::nullopt;
}

PulseAudioDevices::Presence PulseAudioDevices::presenceOf(PulseServer& server, const Text& uid) {
  PulseSession session(server, server.limits().question);
  if (!session.connect()) return Presence::Unknown;
  const auto sinks = sinksWithName(session, uid.bytes());
  if (!sinks) return Presence::Unknown;
  return sinks->empty() ? Presence::Absent : Presence::Present;
}

}  // namespace halvorn
