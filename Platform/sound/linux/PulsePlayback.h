// One sound on its way to the sound server.
#pragma once

#include "Core/Text.h"
#include "Platform/sound/linux/PulseServer.h"
#include "Platform/sound/linux/SoundDecoder.h"

namespace halvorn {

struct PulsePlayback {
  Text name;  // how mixers show it
  Text extension;
  SoundBytes bytes;
  float volume = 1.0F;
  OptionalText device;  // the name of a sink; nullopt: the server's choice for event sounds

  // Plays it to its end and returns then; before that when the server fails, stands still for some seconds or
  // PulseServer::endAll() comes. Thread: any, which it keeps busy.
  void run(PulseServer& server) const;
};

// Whether the server's protocol can carry sound of that shape.
[[nodiscard]] bool canPlay(const SoundDecoder& decoder);

}  // namespace halvorn
