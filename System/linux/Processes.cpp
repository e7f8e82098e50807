// The process model. Nothing is connected before a process is asked for.
#include "KTStuff/KTClasses/KTCompatibility.h"
#include "KTStuff/KTClasses/KTProcessClass.h"
#include "Platform/processes/linux/DesktopWindows.h"
#include "Platform/processes/linux/atspi/AtSpiAccessibility.h"
#include "Platform/processes/linux/dbus/BusAppleEvents.h"
#include "Platform/processes/linux/proc/DesktopSession.h"
#include "Platform/processes/linux/proc/LinuxApplicationControl.h"
#include "Platform/processes/linux/proc/LinuxApplicationEvents.h"
#include "Platform/processes/linux/proc/LinuxProcessSource.h"
#include "Platform/processes/linux/proc/ProcFiles.h"
#include "Platform/processes/linux/proc/RunningApplications.h"
#include "Platform/processes/linux/proc/SessionLaunchContext.h"
#include "Platform/session/linux/BusAddresses.h"
#include "Platform/session/linux/WaylandSession.h"
#include "System/linux/MainLoop.h"
#include "System/linux/Pictures.h"
#include "System/linux/Places.h"

namespace halvorn {
namespace {

DesktopWindows::Places placesIn(const Environment& environment) {
  return {.display = environment.value("DISPLAY").value_or(""),
          .isWayland = isWaylandSession(environment),
          .waylandSocket = waylandSocketPath(environment),
          .bus = sessionBusAddress(environment).value_or("")};
}

// What is known of the programs of this session, and how they are reached. A new adapter of processes is added here.
struct Session {
  explicit Session(KTSystem& system)
      : places(system.parts().of<Places>()),
        loop(system.parts().of<MainLoop>()),
        desktop(placesIn(environment), procFiles, places.bundles, system.log()),
        running(procFiles, places.bundles, windows, DesktopSession::ofThisProgram()),
        events(running, windows, loop.runLoop(), loop.mainThread()),
        source(running, procFiles, windows, system.workspace()),
        appleEvents(running, bus),
        accessibility(running, bus, environment.value("AT_SPI_BUS_ADDRESS").value_or(""), loop.runLoop(),
                      loop.mainThread()) {}

  const Places& places;
  MainLoop& loop;
  const Environment& environment = places.ground.environment;
  const std::string bus = environment.value("DBUS_SESSION_BUS_ADDRESS").value_or("");
  const ProcFiles procFiles;
  DesktopWindows desktop;
  WindowSystem& windows = desktop.windows();
  RunningApplications running;
  LinuxApplicationEvents events;
  LinuxProcessSource source;
  LinuxApplicationControl control{running, windows, places.ground.clock};
  BusAppleEvents appleEvents;
  AtSpiAccessibility accessibility;
  const SessionLaunchContext launchContext{source, environment};
};

struct NotificationCenter {
  explicit NotificationCenter(KTSystem& system) : queue(system.mainThread()) {}
  NotificationQueue queue;
};

KTProcessServices servicesOf(KTSystem& system, Session& session) {
  return {.source = session.source,
          .events = session.events,
          .control = session.control,
          .appleEvents = session.appleEvents,
          .accessibility = session.accessibility,
          .notifications = system.notifications(),
          .bundles = system.bundles(),
          .items = system.items(),
          .files = system.files(),
          .images = system.parts().of<Pictures>().images(),
          .tasks = system.tasks(),
          .unicode = system.unicode(),
          .digests = system.digests(),
          .codes = system.fourCharCodes(),
          .clock = system.clock(),
          .log = system.log()};
}

struct ProcessModel {
  explicit ProcessModel(KTSystem& system) : processes(servicesOf(system, system.parts().of<Session>())) {}
  KTProcessClass processes;
};

}  // namespace

Notifications& KTSystem::notifications() { return parts_->of<NotificationCenter>().queue; }
KTProcessClass& KTSystem::processes() { return parts_->of<ProcessModel>().processes; }
Accessibility& KTSystem::accessibility() { return parts_->of<Session>().accessibility; }
const LaunchContext& KTSystem::launchContext() { return parts_->of<Session>().launchContext; }

}  // namespace halvorn
