// The sound at the end of an installation.
#pragma once

#include "Core/Text.h"

namespace halvorn {

class SoundExtensions;

class CompletionSound {
 public:
  explicit CompletionSound(SoundExtensions& sounds) : sounds_(sounds) {}

  // Plays the sound "Done" at the person's alert volume, on the device of the alerts, when the
  // value of the argument "completionSound" is "YES", in capitals. Everything happens in the
  // background: the call returns at once, and the sound plays on. Thread: any. Fails: without the
  // sound or a sound server, nothing is heard.
  void play(const OptionalText& completionSound);

 private:
  SoundExtensions& sounds_;
};

}  // namespace halvorn
