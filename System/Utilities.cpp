// All the utilities in one, from what the system's other parts have.
#include "KTStuff/KTClasses/KTUtilities.h"

#include "System/Parts.h"

namespace halvorn {
namespace {

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

KTUtilities& KTSystem::utilities() { return parts_->of<Utilities>().utilities; }

}  // namespace halvorn
