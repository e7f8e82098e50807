#include "tests/support/SoundServer.h"

#include <pulse/ext-stream-restore.h>
#include <pulse/pulseaudio.h>

#include <algorithm>
#include <cmath>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <stdexcept>

namespace halvorn {
namespace {

// A connection whose call-backs come on a thread of libpulse's own.
class TestClient {
 public:
  TestClient() : loop_(pa_threaded_mainloop_new()) {
    context_ = pa_context_new(pa_threaded_mainloop_get_api(loop_), "halvorn-test");
    pa_threaded_mainloop_start(loop_);
  }
  ~TestClient() {
    pa_threaded_mainloop_stop(loop_);
    pa_context_disconnect(context_);
    pa_context_unref(context_);
    pa_threaded_mainloop_free(loop_);
  }
  TestClient(const TestClient&) = delete;
  TestClient& operator=(const TestClient&) = delete;

  template <typename Action>
  auto locked(const Action& action) {
    pa_threaded_mainloop_lock(loop_);
    struct Unlock {
      pa_threaded_mainloop* loop;
      ~Unlock() { pa_threaded_mainloop_unlock(loop); }
    } const unlock{loop_};
    return action();
  }

  bool connect() {
    locked([&] { pa_context_connect(context_, nullptr, PA_CONTEXT_NOAUTOSPAWN, nullptr); });
    const auto isSettled = [&] {
      const auto state = locked([&] { return pa_context_get_state(context_); });
      return state == PA_CONTEXT_READY || !PA_CONTEXT_IS_GOOD(state);
    };
    return eventually(isSettled) &&
           locked([&] { return pa_context_get_state(context_) == PA_CONTEXT_READY; });
  }
  // Starts the operation and waits for its end.
  bool carryOut(const std::function<pa_operation*(pa_context*)>& start) {
    pa_operation* operation = locked([&] { return start(context_); });
    if (!operation) return false;
    const auto state = [&] { return locked([&] { return pa_operation_get_state(operation); }); };
    const bool isDone =
        eventually([&] { return state() != PA_OPERATION_RUNNING; }) && state() == PA_OPERATION_DONE;
    locked([&] { pa_operation_unref(operation); });
    return isDone;
  }
  [[nodiscard]] pa_context* context() const { return context_; }

 private:
  pa_threaded_mainloop* loop_;
  pa_context* context_ = nullptr;
};

void takeSuccess(pa_context* /*context*/, int success, void* result) {
  *static_cast<bool*>(result) = success != 0;
}

}  // namespace

std::optional<std::string> SoundServer::missing(Kind kind) {
  std::vector<std::string> programs = {"pactl"};
  if (kind == Kind::PulseAudio) programs.push_back("pulseaudio");
  if (kind == Kind::PipeWire)
    programs.insert(programs.end(), {"pipewire", "pipewire-pulse", "wireplumber", "dbus-daemon"});
  for (const std::string& program : programs) {
    if (!programExists(program)) return program + " is not installed";
  }
  return std::nullopt;
}

SoundServer::SoundServer(Kind kind) {
  const std::string runtime = folder_ / "run";
  std::filesystem::create_directories(runtime + "/pulse");
  std::filesystem::create_directories(folder_ / "home");
  std::filesystem::permissions(runtime, std::filesystem::perms::owner_all);
  setEnvironment("HOME", folder_ / "home");
  setEnvironment("XDG_CONFIG_HOME", folder_ / "home/.config");
  setEnvironment("XDG_STATE_HOME", folder_ / "home/.state");
  setEnvironment("XDG_RUNTIME_DIR", runtime);
  setEnvironment("PULSE_SERVER", "unix:" + runtime + "/pulse/native");
  for (const char* name : {"PULSE_SINK", "PULSE_CLIENTCONFIG", "PULSE_PROP", "DISPLAY"})
    setEnvironment(name, std::nullopt);
  kind == Kind::PulseAudio ? startPulseAudio() : startPipeWire();
}

SoundServer::~SoundServer() {
  while (!processes_.empty()) {
    processes_.back()->sendSignal(SIGCONT);
    processes_.back()->end();
    processes_.pop_back();
  }
  for (const auto& [name, value] : oldEnvironment_) {
    value ? ::setenv(name.c_str(), value->c_str(), 1) : ::unsetenv(name.c_str());
  }
}

void SoundServer::setEnvironment(const std::string& name, const std::optional<std::string>& value) {
  const char* old = std::getenv(name.c_str());
  oldEnvironment_[name] = old ? std::optional<std::string>(old) : std::nullopt;
  value ? ::setenv(name.c_str(), value->c_str(), 1) : ::unsetenv(name.c_str());
}

void SoundServer::startPulseAudio() {
  const std::string script = folder_ / "server.pa";
  // Without rewinds the sinks work in pieces of 50 ms, so that what is played is heard and recorded soon.
  const std::string sink = "\nload-module module-null-sink rate=48000 channels=2 format=s16le norewinds=1 ";
  std::ofstream(script)
      << "load-module module-native-protocol-unix socket=" << (folder_ / "run/pulse/native") << sink
      << "sink_name=lab_a sink_properties=\"device.description=LabSpeakers "
         "device.vendor.name=LabWorks\""
      << sink << "sink_name=lab_b sink_properties=device.description=LabHeadphones"
      << "\nload-module module-stream-restore restore_device=true\nset-default-sink lab_a\n";
  start({"pulseaudio", "-n", "-F", script, "--daemonize=no", "--use-pid-file=no", "--exit-idle-time=-1",
         "--realtime=no", "--high-priority=no", "--log-level=error", "--disable-shm=yes"});
  waitUntilItAnswers();
}

void SoundServer::startPipeWire() {
  const std::string runtime = folder_ / "run";
  setEnvironment("DBUS_SESSION_BUS_ADDRESS", "unix:path=" + runtime + "/bus");
  // Each needs what stands before it, and none of them waits for it.
  start({"dbus-daemon", "--session", "--nofork", "--nosyslog", "--address=unix:path=" + runtime + "/bus"});
  waitForFile(runtime + "/bus");
  start({"pipewire"});
  waitForFile(runtime + "/pipewire-0");
  start({"wireplumber"});
  start({"pipewire-pulse"});
  waitUntilItAnswers();
  for (const char* sink : {"lab_a", "lab_b"}) {
    static_cast<void>(control({"load-module", "module-null-sink", std::string("sink_name=") + sink,
                               "rate=48000", std::string("sink_properties=device.description=Lab_") + sink}));
  }
  const auto isDefault = [this] {
    static_cast<void>(control({"set-default-sink", "lab_a"}));
    return control({"get-default-sink"}) == "lab_a\n";
  };
  if (!eventually(isDefault)) throw std::runtime_error("the sound server has no default sink");
}

void SoundServer::start(const std::vector<std::string>& arguments) {
  processes_.push_back(std::make_unique<ChildProcess>(arguments));
}

void SoundServer::waitForFile(const std::string& path) {
  if (!eventually([&] { return std::filesystem::exists(path); })) {
    throw std::runtime_error("a part of the sound server does not come up: " + process().output());
  }
}

void SoundServer::waitUntilItAnswers() {
  if (!eventually([] { return TestClient().connect(); })) {
    throw std::runtime_error("the sound server does not come up: " + process().output());
  }
}

void SoundServer::setEventSettings(const EventSettings& settings) {
  TestClient client;
  pa_ext_stream_restore_info info = {};
  info.name = "sink-input-by-media-role:event";
  pa_channel_map_init_mono(&info.channel_map);
  pa_cvolume_set(&info.volume, 1, pa_sw_volume_from_linear(settings.volume));
  info.mute = settings.isMuted ? 1 : 0;
  info.device = settings.device.empty() ? nullptr : settings.device.c_str();
  bool isSet = false;
  const bool isDone = client.connect() && client.carryOut([&](pa_context* context) {
    return pa_ext_stream_restore_write(context, PA_UPDATE_REPLACE, &info, 1, 1, takeSuccess, &isSet);
  });
  if (!isDone || !isSet) throw std::runtime_error("the event settings cannot be written");
}

int SoundServer::clients() {
  const std::string list = control({"list", "short", "clients"});
  return static_cast<int>(std::count(list.begin(), list.end(), '\n')) - 1;
}

std::string SoundServer::control(const std::vector<std::string>& arguments) {
  std::vector<std::string> command = {"pactl"};
  command.insert(command.end(), arguments.begin(), arguments.end());
  return runCommand(command).output;
}

struct SoundRecording::Client {
  static void take(pa_stream* stream, std::size_t /*count*/, void* self) {
    auto& client = *static_cast<Client*>(self);
    while (pa_stream_readable_size(stream) > 0) {
      const void* data = nullptr;
      std::size_t size = 0;
      if (pa_stream_peek(stream, &data, &size) < 0 || size == 0) return;
      const auto* samples = static_cast<const float*>(data);
      if (data) client.samples.insert(client.samples.end(), samples, samples + size / sizeof(float));
      pa_stream_drop(stream);
    }
  }
  [[nodiscard]] std::size_t count() {
    return connection.locked([&] { return samples.size() / 2; });
  }

  std::vector<float> samples;  // under the connection's lock; outlives the thread that fills it
  pa_stream* stream = nullptr;
  TestClient connection;
};

namespace {
constexpr int kRecordingRate = 48000;
// As many as the sinks have: mixing them down would change the level.
constexpr int kRecordingChannels = 2;
}  // namespace

SoundRecording::SoundRecording(SoundServer& /*server*/, const std::string& sink)
    : client_(std::make_unique<Client>()) {
  Client& client = *client_;
  if (!client.connection.connect()) throw std::runtime_error("no recording: the server does not answer");
  const pa_sample_spec spec = {PA_SAMPLE_FLOAT32NE, kRecordingRate, kRecordingChannels};
  // Small pieces, so that what was played is here soon.
  pa_buffer_attr pieces = {};
  pieces.maxlength = static_cast<std::uint32_t>(-1);
  pieces.fragsize = 1920;
  client.connection.locked([&] {
    client.stream = pa_stream_new(client.connection.context(), "recording", &spec, nullptr);
    pa_stream_set_read_callback(client.stream, &Client::take, &client);
    pa_stream_connect_record(client.stream, (sink + ".monitor").c_str(), &pieces,
                             static_cast<pa_stream_flags_t>(PA_STREAM_ADJUST_LATENCY | PA_STREAM_DONT_MOVE));
  });
  // Some silence first: then the sink works in small pieces, too.
  if (!eventually([&] { return client.count() > kRecordingRate / 20; })) {
    throw std::runtime_error("no recording of " + sink);
  }
}

SoundRecording::~SoundRecording() {
  client_->connection.locked([&] {
    // Until the server has confirmed the end, pieces still arrive.
    pa_stream_set_read_callback(client_->stream, nullptr, nullptr);
    pa_stream_disconnect(client_->stream);
    pa_stream_unref(client_->stream);
  });
}

double SoundRecording::peak() {
  const std::size_t before = client_->count();
  static_cast<void>(eventually([&] { return client_->count() > before + kRecordingRate / 10; }, 3.0));
  return client_->connection.locked([&] {
    float greatest = 0.0F;
    for (const float sample : client_->samples) greatest = std::max(greatest, std::fabs(sample));
    return static_cast<double>(greatest);
  });
}

double SoundRecording::seconds() { return static_cast<double>(client_->count()) / kRecordingRate; }

double SoundRecording::loudSeconds() {
  return client_->connection.locked([&] {
    const auto isLoud = [](float sample) { return std::fabs(sample) > 1e-5F; };
    const auto count = std::count_if(client_->samples.begin(), client_->samples.end(), isLoud);
    return static_cast<double>(count) / kRecordingChannels / kRecordingRate;
  });
}

void SoundRecording::clear() {
  client_->connection.locked([&] { client_->samples.clear(); });
}

}  // namespace halvorn
