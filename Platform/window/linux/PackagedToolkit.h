// The toolkit that a packaged program brings along, and what the environment says for the system's own.
#pragma once

#include <string>
#include <vector>

namespace halvorn {

// Takes out of this process's environment what would lead a packaged toolkit to parts of another one, or to a window system
// that it brings no part for or that is not there. Answers what was taken out, "QT_PLUGIN_PATH=/usr/lib/qt6". Nothing is
// taken where `programFolder` has no qt.conf: the toolkit is the system's then. Thread: main, before any other thread is
// started.
[[nodiscard]] std::vector<std::string> removeForeignParts(const std::string& programFolder);

}  // namespace halvorn
