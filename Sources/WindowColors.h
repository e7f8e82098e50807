// The colors of the installer window that are its own: the paper of the read-me and the red of warnings.
//
// Thread: main.
#pragma once

#include <memory>

#include "Platform/window/InstallerOutlets.h"

namespace halvorn {

class KTDynamicColor;
class KTDynamicColorClass;

// What the read-me is written on.
[[nodiscard]] std::shared_ptr<KTDynamicColor> readMePaper(KTDynamicColorClass& colors);

// The background of the read-me page and the text of failures, before anything is shown.
void colorWindow(const InstallerOutlets& outlets, KTDynamicColorClass& colors);

// The introduction has become the message of a set-up error.
void colorSetupError(const InstallerOutlets& outlets, KTDynamicColorClass& colors);

}  // namespace halvorn
