// Plays an alert the way the desktop's own are played.
#include <KTStuff/CocoaExtensions/SoundExtensions.h>
#include <KTStuff/KTSystem.h>

#include <iostream>

using namespace halvorn;

int main(int count, char** arguments) {
  KTSystem system({arguments, arguments + count});
  const SoundPointer done = system.sound().soundNamed("Done");
  if (!done) {
    std::cout << "there is no sound of that name\n";
    return 0;
  }
  done->setVolume(system.sound().alertVolume());
  system.sound().playAsSoundEffect(*done);
  system.runUntil([&] { return !done->isPlaying(); }, done->duration() + 1.0);
}
