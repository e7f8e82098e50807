// Mouse and keyboard of a desktop without devices.
#pragma once

#include <memory>

#include "tests/support/Desktop.h"

namespace halvorn {

// A program that does what it is told, line by line, and answers each with "done": "click X Y" in pixels of the screen;
// on KWin and GNOME also "key CODE", the kernel's. What is started after it finds its devices there. Null on a desktop
// that has others, or none. Throws std::runtime_error when it does not come up.
[[nodiscard]] std::unique_ptr<ChildProcess> startedHands(const Desktop& desktop);

}  // namespace halvorn
