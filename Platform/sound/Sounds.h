// Sounds that play as the desktop's own alerts do.
//
// The desktop applies the person's alert volume and mute to everything played here; a sound's own volume is a
// factor on top of them.
//
// Thread: any, one thread at a time for one sound.
// Fails: no sound server, one that does not answer or ends in mid-play: silence. Nothing throws.
#pragma once

#include <memory>
#include <string>

#include "Core/Text.h"

namespace halvorn {

class Sound {  // one sound, and how it is played
 public:
  virtual ~Sound() = default;
  // What logs call it.
  [[nodiscard]] virtual Text description() const = 0;
  // The factor of the next play(), 0 to 1, linear in the amplitude. 1 at first.
  virtual void setVolume(float volume) = 0;
  // The device of the next play() by its AudioDevices::uid(); nullopt, as at first: the desktop's choice for
  // alerts. Answers nullopt, or why the device was refused; then the sound keeps the device it had. May wait
  // for the server, some seconds at most when it does not answer.
  [[nodiscard]] virtual OptionalText setPlaybackDeviceIdentifier(const OptionalText& uid) = 0;
  // In seconds.
  [[nodiscard]] virtual double duration() const = 0;
  // Starts to play and returns at once. False when it still plays, which goes on. The sound plays to its end
  // also when nobody holds it any more.
  virtual bool play() = 0;
  // True from play() until the last of it has been heard or given up.
  [[nodiscard]] virtual bool isPlaying() const = 0;
};
using SoundPointer = std::shared_ptr<Sound>;  // null for none

class Sounds {
 public:
  virtual ~Sounds() = default;

  struct Result {        // either of them
    SoundPointer sound;  // null when there is a problem
    Text problem;        // why there is no sound: empty, damaged, of a kind that cannot be played
  };
  // The sound in the bytes of a sound file; the path names it and is not opened. Does not ask the server.
  [[nodiscard]] virtual Result soundWithData(const Text& path, const std::string& data) = 0;

  // For the end of the program: cuts off what plays and whatever waits for the server, here and in
  // AudioDevices. From now on nothing plays and devices are unknown. Returns at once.
  virtual void endAll() = 0;
};

}  // namespace halvorn
