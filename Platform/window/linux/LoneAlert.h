// An alert of a program that shows no window.
#pragma once

#include "Platform/window/Alerts.h"

namespace halvorn {

// Shows it in the middle of the screen and returns when it is answered, or the program is asked to quit.
// Needs a running QtApplication. Thread: main.
void showLoneAlert(const Text& title, const AlertDescription& alert);

}  // namespace halvorn
