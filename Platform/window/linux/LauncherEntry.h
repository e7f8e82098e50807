// What the desktop's task bars and docks show of a program's work.
#pragma once

#include <optional>

namespace halvorn {

// A share from 0 to 1; nullopt shows none. Returns at once. Thread: main.
void showProgressInLauncher(std::optional<double> share);

}  // namespace halvorn
