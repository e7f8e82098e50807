// What is asked of the person's desktop.
#include "Platform/session/mac/MacDesktopFacts.h"
#include "System/Parts.h"

namespace halvorn {
namespace {

struct Desktop {
  explicit Desktop(KTSystem&) {}
  MacDesktopFacts facts;
};

}  // namespace

DesktopFacts& KTSystem::desktopFacts() { return parts_->of<Desktop>().facts; }

}  // namespace halvorn
