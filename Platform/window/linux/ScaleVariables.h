// What the environment asks the toolkit to enlarge everything by.
#pragma once

#include <string>
#include <vector>

namespace halvorn {

// Takes out of this process's environment what is no usable scale or resolution: no number, or one that makes a window
// of no size or one larger than any screen. Answers what was taken out, "QT_SCALE_FACTOR=-1". Thread: main, before any other
// thread is started.
[[nodiscard]] std::vector<std::string> removeUnusableScales();

}  // namespace halvorn
