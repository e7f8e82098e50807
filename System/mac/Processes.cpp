// The process model.
#include "KTStuff/KTClasses/KTCompatibility.h"
#include "KTStuff/KTClasses/KTProcessClass.h"
#include "Platform/processes/mac/MacAccessibility.h"
#include "Platform/processes/mac/MacAppleEvents.h"
#include "Platform/processes/mac/MacApplicationControl.h"
#include "Platform/processes/mac/MacApplicationEvents.h"
#include "Platform/processes/mac/MacLaunchContext.h"
#include "Platform/processes/mac/MacProcessSource.h"
#include "System/Parts.h"

namespace halvorn {
namespace {

struct Session {
  explicit Session(KTSystem&) {}
  MacProcessSource source;
  MacApplicationEvents events;
  MacApplicationControl control;
  MacAppleEvents appleEvents;
  MacAccessibility accessibility;
  const MacLaunchContext launchContext;
};

struct NotificationCenter {
  explicit NotificationCenter(KTSystem& system) : queue(system.mainThread()) {}
  NotificationQueue queue;
};

KTProcessServices servicesOf(KTSystem& system) {
  auto& session = system.parts().of<Session>();
  return {.source = session.source,
          .events = session.events,
          .control = session.control,
          .appleEvents = session.appleEvents,
          .accessibility = session.accessibility,
          .notifications = system.notifications(),
          .bundles = system.bundles(),
          .items = system.items(),
          .files = system.files(),
          .images = system.images(),
          .tasks = system.tasks(),
          .unicode = system.unicode(),
          .digests = system.digests(),
          .codes = system.fourCharCodes(),
          .clock = system.clock(),
          .log = system.log()};
}

struct ProcessModel {
  explicit ProcessModel(KTSystem& system) : processes(servicesOf(system)) {}
  KTProcessClass processes;
};

}  // namespace

Notifications& KTSystem::notifications() { return parts_->of<NotificationCenter>().queue; }
KTProcessClass& KTSystem::processes() { return parts_->of<ProcessModel>().processes; }
Accessibility& KTSystem::accessibility() { return parts_->of<Session>().accessibility; }
const LaunchContext& KTSystem::launchContext() { return parts_->of<Session>().launchContext; }

}  // namespace halvorn
