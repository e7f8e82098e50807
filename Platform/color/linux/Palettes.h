// The two looks of the window.
#pragma once

#include <QPalette>

namespace halvorn {

enum class Look { Light, Dark };
enum class Contrast { Usual, High };

[[nodiscard]] QPalette paletteFor(Look look, Contrast contrast = Contrast::Usual);

}  // namespace halvorn
