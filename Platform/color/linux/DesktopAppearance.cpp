#include "Platform/color/linux/DesktopAppearance.h"

#include <QApplication>
#include <QWidget>

#include "Platform/color/linux/ColorSchemeWatch.h"
#include "Platform/color/linux/Palettes.h"

namespace halvorn {

DesktopAppearance::DesktopAppearance(std::optional<InterfaceStyle> fixed) {
  use(fixed.value_or(InterfaceStyle::Light));
  if (fixed) return;
  const auto report = [this](bool prefersDark) {
    const InterfaceStyle wanted = prefersDark ? InterfaceStyle::Dark : InterfaceStyle::Light;
    if (wanted == style_) return;
    use(wanted);
    if (changed) changed();
  };
  watch_ = std::make_unique<ColorSchemeWatch>(report, [this] {
    if (unanswered) unanswered();
  });
}

DesktopAppearance::~DesktopAppearance() = default;

InterfaceStyle DesktopAppearance::style() const { return style_; }

void DesktopAppearance::use(InterfaceStyle style) {
  style_ = style;
  QApplication::setPalette(paletteFor(style == InterfaceStyle::Dark ? Look::Dark : Look::Light));
  // Also what is held to a look of its own: its colors may follow the desktop all the same.
  for (QWidget* widget : QApplication::allWidgets()) widget->update();
}

}  // namespace halvorn
