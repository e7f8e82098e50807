// The process model on a made-up desktop, with everything it stands on.
//
//   FakeProcesses fake;
//   fake.applications.start({.name = "Editor", .signature = fourCharCode("EDIT"), .path =
//   "/Applications/Editor.app"}); DestinationChoice choice({..., fake.processes, ...});
//
// This program itself runs as "Installer", signature InSt, pid 100. Notifications wait until the test says
// mainThread.becomeIdle(). The clock is the fixture's own, or one that is passed in.
#pragma once

#include "KTStuff/KTClasses/KTCompatibility.h"
#include "KTStuff/KTClasses/KTProcess.h"
#include "Platform/text/posix/MacRomanCodes.h"
#include "Platform/window/null/NullWindow.h"
#include "tests/fakes/FakeAccessibility.h"
#include "tests/fakes/FakeAppleEvents.h"
#include "tests/fakes/FakeApplications.h"
#include "tests/fakes/FakeBundles.h"
#include "tests/fakes/FakeClock.h"
#include "tests/fakes/FakeDigests.h"
#include "tests/fakes/FakeFileManager.h"
#include "tests/fakes/FakeItemFacts.h"
#include "tests/fakes/FakeMainThread.h"
#include "tests/fakes/FakeTasks.h"
#include "tests/fakes/FakeTemporaryFiles.h"
#include "tests/fakes/FakeUnicode.h"
#include "tests/fakes/RecordingLog.h"

namespace halvorn {

class FakeProcesses {
 private:
  FakeClock ownClock_;
  RecordingLog ownLog_;
  NullImages noImages_;

 public:
  FakeProcesses() : FakeProcesses(nullptr, nullptr) {}
  explicit FakeProcesses(FakeClock& sharedClock) : FakeProcesses(&sharedClock, nullptr) {}
  FakeProcesses(FakeClock& sharedClock, RecordingLog& sharedLog) : FakeProcesses(&sharedClock, &sharedLog) {}

  FakeClock& clock;
  RecordingLog& log;
  FakeApplications applications{clock};
  FakeAppleEvents appleEvents;
  FakeAccessibility accessibility;
  FakeMainThread mainThread;
  NotificationQueue notifications{mainThread};
  FakeBundles bundles;
  FakeItemFacts items;
  FakeFileManager files;
  FakeTemporaryFiles temporaryFiles;
  FakeTasks tasks{temporaryFiles, clock};
  FakeUnicode unicode;
  FakeDigests digests;
  const MacRomanCodes codes;
  KTProcessClass processes{{.source = applications,
                            .events = applications,
                            .control = applications,
                            .appleEvents = appleEvents,
                            .accessibility = accessibility,
                            .notifications = notifications,
                            .bundles = bundles,
                            .items = items,
                            .files = files,
                            .images = noImages_,
                            .tasks = tasks,
                            .unicode = unicode,
                            .digests = digests,
                            .codes = codes,
                            .clock = clock,
                            .log = log}};

 private:
  FakeProcesses(FakeClock* sharedClock, RecordingLog* sharedLog)
      : clock(sharedClock != nullptr ? *sharedClock : ownClock_),
        log(sharedLog != nullptr ? *sharedLog : ownLog_) {}
};

}  // namespace halvorn
