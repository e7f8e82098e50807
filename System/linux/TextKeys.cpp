// The keyboard of the session.
#include "Platform/session/linux/LinuxKeyboard.h"
#include "System/linux/Ground.h"

namespace halvorn {
namespace {

// Connects to the display, so it is made for the first who asks and not before.
struct Keys {
  explicit Keys(KTSystem& system) : keyboard(system.parts().of<Ground>().environment) {}
  const LinuxKeyboard keyboard;
};

}  // namespace

const Keyboard& KTSystem::keyboard() { return parts_->of<Keys>().keyboard; }

}  // namespace halvorn
