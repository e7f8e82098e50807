// A sound server of a test's own, with two sinks that nobody hears: lab_a, the default, and lab_b.
//
//   if (const auto missing = SoundServer::missing()) GTEST_SKIP() << *missing;
//   SoundServer server;
//   SoundRecording speakers(server, "lab_a");
//   ... play ...
//   EXPECT_NEAR(speakers.peak(), 0.5, 0.01);
//
// It makes itself the sound server of the test program's environment (PULSE_SERVER, HOME, XDG_*), which has
// its old values back when the object is gone.
//
// Thread: the one that made it.
#pragma once

#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "tests/support/ChildProcess.h"
#include "tests/support/TemporaryFolder.h"

namespace halvorn {

class SoundServer {
 public:
  enum class Kind { PulseAudio, PipeWire };

  // Why there cannot be such a server on this machine; nullopt when there can.
  [[nodiscard]] static std::optional<std::string> missing(Kind kind = Kind::PulseAudio);

  // Returns when the server answers. Throws std::runtime_error when it does not come up.
  explicit SoundServer(Kind kind = Kind::PulseAudio);
  ~SoundServer();
  SoundServer(const SoundServer&) = delete;
  SoundServer& operator=(const SoundServer&) = delete;

  // What the person has set for the sounds of events; a text that is empty leaves the device to the server.
  struct EventSettings {
    double volume = 1.0;  // linear
    bool isMuted = false;
    std::string device = {};
  };
  void setEventSettings(const EventSettings& settings);

  // The process that speaks the protocol.
  [[nodiscard]] ChildProcess& process() { return *processes_.back(); }
  // How many programs are connected, this question apart.
  [[nodiscard]] int clients();
  // The output of the server's own command-line tool.
  [[nodiscard]] std::string control(const std::vector<std::string>& arguments);

 private:
  void setEnvironment(const std::string& name, const std::optional<std::string>& value);
  void startPulseAudio();
  void startPipeWire();
  void start(const std::vector<std::string>& arguments);
  void waitForFile(const std::string& path);
  void waitUntilItAnswers();

  TemporaryFolder folder_;
  std::map<std::string, std::optional<std::string>> oldEnvironment_;
  std::vector<std::unique_ptr<ChildProcess>> processes_;  // ended in reverse order
};

// What comes out of a sink from now on.
class SoundRecording {
 public:
  // Returns when the recording runs.
  SoundRecording(SoundServer& server, const std::string& sink);
  ~SoundRecording();
  SoundRecording(const SoundRecording&) = delete;
  SoundRecording& operator=(const SoundRecording&) = delete;

  // The greatest amplitude so far, 0 to 1, once all that had been played when it was asked has arrived.
  [[nodiscard]] double peak();
  // How much was recorded, and how much of it was louder than nothing.
  [[nodiscard]] double seconds();
  [[nodiscard]] double loudSeconds();
  // Forgets what was recorded.
  void clear();

 private:
  struct Client;
  std::unique_ptr<Client> client_;
};

}  // namespace halvorn
