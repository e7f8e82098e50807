#include "Sources/CompletionSound.h"

#include "KTStuff/CocoaExtensions/SoundExtensions.h"

namespace halvorn {

void CompletionSound::play(const OptionalText& completionSound) {
  if (completionSound != Text("YES")) return;
  sounds_.inBackground([&sounds = sounds_] {
    const SoundPointer done = sounds.soundNamed("Done");
    if (!done) return;
    done->setVolume(sounds.alertVolume());
    sounds.playAsSoundEffect(*done);
  });
}

}  // namespace halvorn
