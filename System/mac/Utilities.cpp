// What is asked of the person's desktop, and all the utilities in one.
#include "KTStuff/KTClasses/KTUtilities.h"

#include "Platform/session/mac/MacDesktopFacts.h"
#include "System/Parts.h"

namespace halvorn {
namespace {

struct Desktop {
  explicit Desktop(KTSystem&) {}
  MacDesktopFacts facts;
};

KTUtilitiesDesktopServices desktopServices(KTSystem& system) {
  return {.processes = system.processes(),
          .notifications = system.notifications(),
          .mainThread = system.mainThread(),
          .desktop = system.desktopFacts(),
          .defaults = system.defaults(),
          .interfaceStyle = system.interfaceStyle(),
          .system = system.systemFacts(),
          .bundles = system.bundles(),
          .images = system.images(),
          .log = system.log()};
}

KTUtilitiesLaunchingServices launchingServices(KTSystem& system) {
  return {.processes = system.processes(),
          .bundles = system.bundles(),
          .files = system.files(),
          .searchPaths = system.searchPaths(),
          .items = system.items(),
          .launchContext = system.launchContext(),
          .tasks = system.tasks(),
          .clock = system.clock(),
          .log = system.log()};
}

struct Utilities {
  explicit Utilities(KTSystem& system)
      : utilities(
            system.versions(),
            {system.tasks(), system.temporaryFiles(), system.searchPaths(), system.clock(), system.log()},
            desktopServices(system), launchingServices(system)) {}
  KTUtilities utilities;
};

}  // namespace

DesktopFacts& KTSystem::desktopFacts() { return parts_->of<Desktop>().facts; }
KTUtilities& KTSystem::utilities() { return parts_->of<Utilities>().utilities; }

}  // namespace halvorn
