// The utilities on a real desktop: everything below them is the real adapter, told
// the display and the buses by name.
//
//   Desktop desktop;
//   RealUtilities real(desktop);
//   ASSERT_TRUE(real.loop.runUntil([&] { return real.utilities.fullScreenMode(); }, testPatience));
#pragma once

#include <optional>
#include <string>

#include "KTStuff/KTClasses/KTCompatibility.h"
#include "KTStuff/KTClasses/KTUtilities.h"
#include "Platform/bundles/linux/LinuxBundles.h"
#include "Platform/bundles/linux/LinuxItemFacts.h"
#include "Platform/bundles/linux/launching/Launcher.h"
#include "Platform/bundles/linux/launching/LinuxWorkspace.h"
#include "Platform/bundles/linux/launching/OpenToolTasks.h"
#include "Platform/files/posix/PosixFileManager.h"
#include "Platform/files/posix/PosixTemporaryFiles.h"
#include "Platform/processes/linux/proc/DesktopSession.h"
#include "Platform/processes/linux/proc/LinuxApplicationControl.h"
#include "Platform/processes/linux/proc/LinuxApplicationEvents.h"
#include "Platform/processes/linux/proc/LinuxProcessSource.h"
#include "Platform/processes/linux/proc/ProcFiles.h"
#include "Platform/processes/linux/proc/RunningApplications.h"
#include "Platform/processes/linux/proc/SessionLaunchContext.h"
#include "Platform/processes/linux/x11/XWindowSystem.h"
#include "Platform/processes/null/NullProcesses.h"
#include "Platform/running/posix/PollRunLoop.h"
#include "Platform/running/posix/PosixClock.h"
#include "Platform/running/posix/PosixTasks.h"
#include "Platform/session/linux/Environment.h"
#include "Platform/session/linux/LinuxDesktopFacts.h"
#include "Platform/session/linux/XdgFolders.h"
#include "Platform/session/linux/XdgSearchPaths.h"
#include "Platform/text/posix/MacRomanCodes.h"
#include "Platform/window/null/NullWindow.h"
#include "tests/fakes/FakeDefaults.h"
#include "tests/fakes/FakeDigests.h"
#include "tests/fakes/FakeInterfaceStyleSetting.h"
#include "tests/fakes/FakeLocalizedDates.h"
#include "tests/fakes/FakeSystemFacts.h"
#include "tests/fakes/FakeUnicode.h"
#include "tests/fakes/RecordingLog.h"
#include "tests/support/Desktop.h"

namespace halvorn {

inline Environment environmentOf(const Desktop& desktop) {
  Environment::Variables variables;
  for (const std::string& entry : desktop.environment()) {
    const std::size_t equals = entry.find('=');
    variables[entry.substr(0, equals)] = entry.substr(equals + 1);
  }
  return Environment(std::move(variables));
}

struct RealUtilities {
  // `mainBundle` is the bundle that the program passes for; by default the installer's.
  explicit RealUtilities(const Desktop& desktop, const std::string& mainBundle = KT_TEST_BUNDLE)
      : environment(environmentOf(desktop)),
        display(environment.value("DISPLAY")),
        bundles(Text(mainBundle + "/Contents/Linux/Program"), {"en"}),
        windows(desktop.displayName(), XWindowSystem::Coverage::AllWindows, procFiles),
        running(procFiles, bundles, windows, DesktopSession::from(desktop.environment())) {}

  const Environment environment;
  const std::optional<std::string> display;
  PollRunLoop loop;
  PosixClock clock;
  RecordingLog log;
  PosixFileManager files;
  const XdgFolders folders{environment};
  const XdgSearchPaths searchPaths{folders};
  const LinuxBundles bundles;
  const Launcher launcher{environment, folders};
  LinuxWorkspace workspace{bundles, folders, environment, launcher, {"en"}};
  PosixTasks posixTasks;
  OpenToolTasks tasks{posixTasks, workspace};
  PosixTemporaryFiles temporaryFiles{Text(*environment.value("HOME"))};

  const ProcFiles procFiles;
  XWindowSystem windows;
  RunningApplications running;
  LinuxApplicationEvents events{running, windows, loop, loop};
  LinuxProcessSource source{running, procFiles, windows, workspace};
  LinuxApplicationControl control{running, windows, clock};
  const LinuxItemFacts items{bundles};
  NullAppleEvents appleEvents;
  NullAccessibility accessibility;
  NotificationQueue notifications{loop};
  NullImages images;
  const FakeUnicode unicode;
  const FakeDigests digests;
  const MacRomanCodes codes;
  KTProcessClass processes{{.source = source,
                            .events = events,
                            .control = control,
                            .appleEvents = appleEvents,
                            .accessibility = accessibility,
                            .notifications = notifications,
                            .bundles = bundles,
                            .items = items,
                            .files = files,
                            .images = images,
                            .tasks = tasks,
                            .unicode = unicode,
                            .digests = digests,
                            .codes = codes,
                            .clock = clock,
                            .log = log}};

  LinuxDesktopFacts desktopFacts{environment, std::nullopt, loop, clock};
  FakeDefaults defaults;
  FakeInterfaceStyleSetting style;  // the real one needs the toolkit; its tests are elsewhere
  const SessionLaunchContext launchContext{source, environment};
  const FakeSystemFacts systemFacts;
  const FakeLocalizedDates dates;

  KTUtilities utilities{KTUtilitiesVersions(bundles, systemFacts, unicode, dates, log),
                        KTUtilitiesScripts(tasks, temporaryFiles, searchPaths, clock, log),
                        {.processes = processes,
                         .notifications = notifications,
                         .mainThread = loop,
                         .desktop = desktopFacts,
                         .defaults = defaults,
                         .interfaceStyle = style,
                         .system = systemFacts,
                         .bundles = bundles,
                         .images = images,
                         .log = log},
                        {.processes = processes,
                         .bundles = bundles,
                         .files = files,
                         .searchPaths = searchPaths,
                         .items = items,
                         .launchContext = launchContext,
                         .tasks = tasks,
                         .clock = clock,
                         .log = log}};
};

}  // namespace halvorn
