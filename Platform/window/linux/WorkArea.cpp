#include "Platform/window/linux/WorkArea.h"

#include <QScreen>
#include <algorithm>

namespace halvorn {
namespace {

constexpr QMargins kUsualFrame{6, 40, 6, 6};
constexpr qreal kWantedFontSize = 10.0;
constexpr qreal kWidest = 2.0;  // lines would be hard to follow

}  // namespace

QMargins frameAround(const QWidget& window) {
  const QRect inside = window.geometry();
  const QRect whole = window.frameGeometry();
  if (inside == whole) return kUsualFrame;
  return {inside.left() - whole.left(), inside.top() - whole.top(), whole.right() - inside.right(),
          whole.bottom() - inside.bottom()};
}

QSize roomFor(const QWidget& window) {
  return window.screen()->availableGeometry().size().shrunkBy(frameAround(window));
}

qreal timesWider(const QFont& font) { return std::clamp(font.pointSizeF() / kWantedFontSize, 1.0, kWidest); }

}  // namespace halvorn
