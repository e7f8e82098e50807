// Sounds played by the sound server in the role of events.
#pragma once

#include "Core/TaskGate.h"
#include "Platform/running/Workers.h"
#include "Platform/sound/Sounds.h"
#include "Platform/sound/linux/PulseServer.h"

namespace halvorn {

class PulseSounds : public Sounds {
 public:
  // Both live longer than this object, and this object longer than its sounds.
  PulseSounds(PulseServer& server, Workers& workers) : server_(server), workers_(workers) {}
  // As endAll(), and waits until nothing plays.
  ~PulseSounds() override;
  PulseSounds(const PulseSounds&) = delete;
  PulseSounds& operator=(const PulseSounds&) = delete;

  Result soundWithData(const Text& path, const std::string& data) override;
  // Ends PulseAudioDevices of the same server, too.
  void endAll() override;

 private:
  PulseServer& server_;
  Workers& workers_;
  TaskGate gate_;
};

}  // namespace halvorn
