// The two looks of the window.
#pragma once

#include <QPalette>

namespace halvorn {

enum class Look { Light, Dark };

[[nodiscard]] QPalette paletteFor(Look look);

}  // namespace halvorn
