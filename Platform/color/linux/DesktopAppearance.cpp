#include "Platform/color/linux/DesktopAppearance.h"

#include <QApplication>
#include <QWidget>

#include "Platform/color/linux/AppearanceWatch.h"
#include "Platform/color/linux/Motion.h"
#include "Platform/color/linux/Palettes.h"

namespace halvorn {

DesktopAppearance::DesktopAppearance(std::optional<InterfaceStyle> fixed,
                                     std::optional<Contrast> fixedContrast)
    : fixed_(fixed), fixedContrast_(fixedContrast) {
  use(fixed.value_or(InterfaceStyle::Light), fixedContrast.value_or(Contrast::Usual));
  watch_ = std::make_unique<AppearanceWatch>([this](const AppearanceSettings& settings) { follow(settings); },
                                             [this] {
                                               if (unanswered) unanswered();
                                             });
}

DesktopAppearance::~DesktopAppearance() = default;

InterfaceStyle DesktopAppearance::style() const { return style_; }
Contrast DesktopAppearance::contrast() const { return contrast_; }

void DesktopAppearance::follow(const AppearanceSettings& settings) {
  setWidgetsMotion(settings.prefersStillness() ? Motion::Reduced : Motion::Usual);
  const InterfaceStyle style =
      fixed_.value_or(settings.prefersDark() ? InterfaceStyle::Dark : InterfaceStyle::Light);
  const Contrast contrast =
      fixedContrast_.value_or(settings.prefersContrast() ? Contrast::High : Contrast::Usual);
  if (style == style_ && contrast == contrast_) return;
  const bool isOtherStyle = style != style_;
  use(style, contrast);
  if (isOtherStyle && changed) changed();
}

void DesktopAppearance::use(InterfaceStyle style, Contrast contrast) {
  style_ = style;
  contrast_ = contrast;
  QApplication::setPalette(paletteFor(style == InterfaceStyle::Dark ? Look::Dark : Look::Light, contrast));
  // Also what is held to a look of its own: its colors may follow the desktop all the same.
  for (QWidget* widget : QApplication::allWidgets()) widget->update();
}

}  // namespace halvorn
