// Everything that sounds stand on, in memory, apart from what plays them.
#pragma once

#include <string>

#include "KTStuff/CocoaExtensions/SoundExtensions.h"
#include "KTStuff/KTClasses/KTUtilitiesVersions.h"
#include "tests/fakes/FakeBundles.h"
#include "tests/fakes/FakeClock.h"
#include "tests/fakes/FakeDefaults.h"
#include "tests/fakes/FakeFileManager.h"
#include "tests/fakes/FakeLocalizedDates.h"
#include "tests/fakes/FakeSearchPaths.h"
#include "tests/fakes/FakeSounds.h"
#include "tests/fakes/FakeSystemFacts.h"
#include "tests/fakes/FakeUnicode.h"
#include "tests/fakes/RecordingLog.h"

namespace halvorn {

struct SoundWorld {
  [[nodiscard]] SoundServices services(Sounds& sounds, const AudioDevices& devices, Workers& workers) {
    return {.sounds = sounds,
            .devices = devices,
            .searchPaths = searchPaths,
            .files = files,
            .bundles = bundles,
            .defaults = defaults,
            .versions = versions,
            .workers = workers,
            .clock = clock,
            .log = log,
            .userID = 1000};
  }
  // A sound in the program's own resources; returns its path.
  Text addApplicationSound(const Text& fileName, const std::string& data = "RIFF") {
    const Text path = bundles.addResource(bundles.mainBundle, fileName);
    files.addFile(path.bytes(), data);
    return path;
  }
  void setBeepVolume(const PropertyValue& value) {
    defaults.domains["com.apple.systemsound"].insert_or_assign("com.apple.sound.beep.volume", value);
  }
  void setSoundLog() { defaults.values.insert_or_assign("soundLog", true); }

  FakeBundles bundles;
  FakeFileManager files;
  FakeDefaults defaults;
  FakeSearchPaths searchPaths;
  FakeSystemFacts systemFacts;
  FakeUnicode unicode;
  FakeLocalizedDates dates;
  FakeClock clock;
  RecordingLog log;
  KTUtilitiesVersions versions{bundles, systemFacts, unicode, dates, log};
};

}  // namespace halvorn
