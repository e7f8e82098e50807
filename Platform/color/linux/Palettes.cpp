#include "Platform/color/linux/Palettes.h"

#include <QColor>

namespace halvorn {
namespace {

struct Tones {
  QRgb window, base, alternate, text, secondary, disabled, button, highlight, edge, rule, link, shadow;
};

// Text on window and base has a contrast of at least 4.5 : 1, secondary text and what stands on the highlight included;
// edges of what can be pressed, the highlight among them, have 3 : 1. Rules only part what is apart anyway.
constexpr Tones kLight = {0xF2F2F4, 0xFFFFFF, 0xF7F7F9, 0x1D1D1F, 0x5C5C63, 0x9A9AA0,
                          0xFBFBFC, 0x2563C9, 0x8A8A90, 0xC9C9CF, 0x1A5FB4, 0x8C8C92};
constexpr Tones kDark = {0x2B2B2E, 0x1E1E20, 0x252528, 0xF0F0F2, 0xB0B0B8, 0x77777E,
                         0x3C3C41, 0x3471DC, 0x75757B, 0x47474D, 0x7AB0FF, 0x0C0C0D};

// Edges are as clear as letters, and nothing is pale; what cannot be used keeps 4.5 : 1.
constexpr Tones kLightAndClear = {0xFFFFFF, 0xFFFFFF, 0xFFFFFF, 0x000000, 0x2A2A2E, 0x6A6A70,
                                  0xFFFFFF, 0x0B3D91, 0x000000, 0x000000, 0x0B3D91, 0x000000};
constexpr Tones kDarkAndClear = {0x000000, 0x000000, 0x000000, 0xFFFFFF, 0xE4E4E8, 0x9A9AA2,
                                 0x000000, 0x1F5FD0, 0xFFFFFF, 0xFFFFFF, 0x9CC7FF, 0xFFFFFF};

const Tones& tonesFor(Look look, Contrast contrast) {
  if (contrast == Contrast::High) return look == Look::Dark ? kDarkAndClear : kLightAndClear;
  return look == Look::Dark ? kDark : kLight;
}

}  // namespace

QPalette paletteFor(Look look, Contrast contrast) {
  const Tones& tones = tonesFor(look, contrast);
  QPalette palette;
  const auto set = [&palette](QPalette::ColorRole role, QRgb color) {
    palette.setColor(role, QColor(color));
  };
  set(QPalette::Window, tones.window);
  set(QPalette::WindowText, tones.text);
  set(QPalette::Base, tones.base);
  set(QPalette::AlternateBase, tones.alternate);
  set(QPalette::Text, tones.text);
  set(QPalette::PlaceholderText, tones.secondary);
  set(QPalette::Button, tones.button);
  set(QPalette::ButtonText, tones.text);
  set(QPalette::BrightText, 0xFFFFFF);
  set(QPalette::ToolTipBase, tones.alternate);
  set(QPalette::ToolTipText, tones.text);
  set(QPalette::Highlight, tones.highlight);
  set(QPalette::HighlightedText, 0xFFFFFF);
  set(QPalette::Link, tones.link);
  set(QPalette::LinkVisited, tones.link);
  set(QPalette::Mid, tones.edge);
  set(QPalette::Midlight, tones.rule);
  set(QPalette::Light, look == Look::Dark ? 0x505056 : 0xFFFFFF);
  set(QPalette::Dark, tones.shadow);
  set(QPalette::Shadow, tones.shadow);
  for (const auto role :
       {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::HighlightedText}) {
    palette.setColor(QPalette::Disabled, role, QColor(tones.disabled));
  }
  palette.setColor(QPalette::Disabled, QPalette::Highlight, QColor(tones.rule));
  // The toolkit draws what cannot be chosen in a menu twice, as if it were engraved; on dark ground it is a blur.
  palette.setColor(QPalette::Disabled, QPalette::Light, QColor(tones.base));
  return palette;
}

}  // namespace halvorn
