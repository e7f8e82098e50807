// The process model on the real system: this user's processes and the windows of one display.
//
//   LiveProcesses live({.display = desktop.displayName()});
//   live.loop.runUntil([&] { return live.changes.size() == 2; }, testPatience);
//
// Thread: the one that made it is the main thread.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "KTStuff/KTClasses/KTCompatibility.h"
#include "KTStuff/KTClasses/KTProcess.h"
#include "Platform/bundles/linux/LinuxBundles.h"
#include "Platform/bundles/linux/LinuxItemFacts.h"
#include "Platform/files/posix/PosixFileManager.h"
#include "Platform/processes/linux/DesktopWindows.h"
#include "Platform/processes/linux/proc/DesktopSession.h"
#include "Platform/processes/linux/proc/LinuxApplicationControl.h"
#include "Platform/processes/linux/proc/LinuxApplicationEvents.h"
#include "Platform/processes/linux/proc/LinuxProcessSource.h"
#include "Platform/processes/linux/proc/ProcFiles.h"
#include "Platform/processes/linux/proc/RunningApplications.h"
#include "Platform/processes/null/NullProcesses.h"
#include "Platform/running/linux/ThisProgram.h"
#include "Platform/running/posix/PollRunLoop.h"
#include "Platform/running/posix/PosixClock.h"
#include "Platform/running/posix/PosixTasks.h"
#include "Platform/text/posix/MacRomanCodes.h"
#include "Platform/window/null/NullWindow.h"
#include "tests/fakes/FakeDigests.h"
#include "tests/fakes/FakeUnicode.h"
#include "tests/fakes/FakeWorkspace.h"
#include "tests/fakes/RecordingLog.h"
#include "tests/support/ChildProcess.h"

namespace halvorn {

struct LiveOptions {
  std::string display = {};                // "" for none
  std::string waylandSocket = {};          // "" for none
  std::string bus = {};                    // the session's; "" for none
  std::string table = "/proc";             // or that of OwnProcesses
  AppleEvents* appleEvents = nullptr;      // null: none reach anybody
  Accessibility* accessibility = nullptr;  // null: nobody can be watched
  Images* images = nullptr;                // null: no pictures
  const Digests* digests = nullptr;        // null: those that everybody knows
};

class LiveProcesses {
 public:
  explicit LiveProcesses(const LiveOptions& options);
  ~LiveProcesses();  // what its parts are made of is compiled in one place

  // Runs the loop until the condition holds.
  template <typename Condition>
  [[nodiscard]] bool settles(Condition condition, double seconds = kTestPatience) {
    return loop.runUntil(condition, seconds);
  }
  // The process that is listed with that id; null when there is none.
  [[nodiscard]] KTProcessPointer listed(std::int32_t pid);

  PollRunLoop loop;
  PosixClock clock;
  RecordingLog log;
  LinuxBundles bundles{pathOfThisProgram(), {}};
  PosixFileManager files;
  PosixTasks tasks;
  FakeWorkspace workspace;
  FakeUnicode unicode;
  FakeDigests knownDigests;
  const MacRomanCodes codes;
  NullImages noImages;
  NullAppleEvents noAppleEvents;
  NullAccessibility noAccessibility;
  ProcFiles procFiles;
  DesktopWindows desktop;
  WindowSystem& windows = desktop.windows();
  RunningApplications running;
  LinuxProcessSource source;
  LinuxApplicationControl control;
  LinuxApplicationEvents events;
  LinuxItemFacts items{bundles};
  NotificationQueue notifications{loop};
  KTProcessClass processes;

  // Of the change notifications that came: "started", "ended", "front".
  std::vector<std::string> changes;

 private:
  std::unique_ptr<Notifications::Observation> observation_;
};

}  // namespace halvorn
