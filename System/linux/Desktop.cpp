// What is asked of the person's desktop.
#include "Platform/session/linux/BusAddresses.h"
#include "Platform/session/linux/LinuxDesktopFacts.h"
#include "System/linux/MainLoop.h"
#include "System/linux/Pictures.h"
#include "System/linux/Places.h"
#include "System/linux/Toolkit.h"

namespace halvorn {
namespace {

struct Desktop {
  explicit Desktop(KTSystem& system)
      : toolkit(system.parts().of<Toolkit>()),
        ground(system.parts().of<Ground>()),
        facts(ground.environment, systemBusAddress(ground.environment),
              system.parts().of<MainLoop>().runLoop(), ground.clock) {}

  const Toolkit& toolkit;
  Ground& ground;
  LinuxDesktopFacts facts;
};

}  // namespace

DesktopFacts& KTSystem::desktopFacts() { return parts_->of<Desktop>().facts; }

}  // namespace halvorn
