// How large a window may be: its screen without bars and panels, and without its own frame.
#pragma once

#include <QMargins>
#include <QSize>
#include <QWidget>

namespace halvorn {

// What stands around the window, or will as windows go, as long as that is not known.
[[nodiscard]] QMargins frameAround(const QWidget& window);
// The largest size of the window inside its frame.
[[nodiscard]] QSize roomFor(const QWidget& window);
// How much wider than with a font of ten points a window is wanted.
[[nodiscard]] qreal timesWider(const QFont& font);

}  // namespace halvorn
