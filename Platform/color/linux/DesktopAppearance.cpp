#include "Platform/color/linux/DesktopAppearance.h"

#include <QApplication>
#include <QWidget>
#include <utility>

#include "Platform/color/linux/ColorSchemeWatch.h"
#include "Platform/color/linux/Palettes.h"

namespace halvorn {

DesktopAppearance::DesktopAppearance(std::optional<InterfaceStyle> fixed,
                                     std::optional<Contrast> fixedContrast) {
  use(fixed.value_or(InterfaceStyle::Light), fixedContrast.value_or(Contrast::Usual));
  ColorSchemeWatch::Report report;
  if (!fixed) {
    report.scheme = [this](bool prefersDark) {
      const InterfaceStyle wanted = prefersDark ? InterfaceStyle::Dark : InterfaceStyle::Light;
      if (wanted == style_) return;
      use(wanted, contrast_);
      if (changed) changed();
    };
  }
  if (!fixedContrast) {
    report.contrast = [this](bool prefersContrast) {
      const Contrast wanted = prefersContrast ? Contrast::High : Contrast::Usual;
      if (wanted != contrast_) use(style_, wanted);
    };
  }
  if (!report.scheme && !report.contrast) return;
  watch_ = std::make_unique<ColorSchemeWatch>(std::move(report), [this] {
    if (unanswered) unanswered();
  });
}

DesktopAppearance::~DesktopAppearance() = default;

InterfaceStyle DesktopAppearance::style() const { return style_; }
Contrast DesktopAppearance::contrast() const { return contrast_; }

void DesktopAppearance::use(InterfaceStyle style, Contrast contrast) {
  style_ = style;
  contrast_ = contrast;
  QApplication::setPalette(paletteFor(style == InterfaceStyle::Dark ? Look::Dark : Look::Light, contrast));
  // Also what is held to a look of its own: its colors may follow the desktop all the same.
  for (QWidget* widget : QApplication::allWidgets()) widget->update();
}

}  // namespace halvorn
