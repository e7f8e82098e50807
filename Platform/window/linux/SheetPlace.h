// Where an alert stands that hangs on a window.
#pragma once

namespace halvorn {

// A window of its own, which the desktop places; or a part of the window that it hangs on, where the desktop would
// place it anywhere.
enum class SheetPlace { OwnWindow, InsideWindow };
// Of the desktop that the running toolkit application is on. Thread: main.
[[nodiscard]] SheetPlace usualSheetPlace();

}  // namespace halvorn
