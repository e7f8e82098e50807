// The platform's application main function: each platform's composition root implements it.
#pragma once

namespace halvorn {

// Makes the adapters and the window, wakes the controller and runs the event loop. The exit
// status of the program. Thread: main.
[[nodiscard]] int applicationMain(int argumentCount, char** arguments);

}  // namespace halvorn
