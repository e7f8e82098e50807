// Whether what a window shows moves.
#pragma once

namespace halvorn {

enum class Motion { Usual, Reduced };

// For all widgets of the program; Usual until it is set. A QApplication must exist. Thread: main.
[[nodiscard]] Motion widgetsMotion();
void setWidgetsMotion(Motion motion);

}  // namespace halvorn
