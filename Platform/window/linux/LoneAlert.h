// An alert of a program that shows no window.
#pragma once

#include "Platform/bundles/LocalizedStrings.h"
#include "Platform/window/Alerts.h"

namespace halvorn {

// Shows it in the middle of the screen and returns when it is answered, or the program is asked to quit.
// `strings` name what is on it, and tell the direction of writing. Needs a running QtApplication. Thread: main.
void showLoneAlert(const Text& title, const AlertDescription& alert, const LocalizedStrings& strings);

}  // namespace halvorn
