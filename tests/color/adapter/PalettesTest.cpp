// What can be read in each look, by the formula of the accessibility guidelines.
#include "Platform/color/linux/Palettes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace halvorn {
namespace {

double luminance(const QColor& color) {
  const auto part = [](double share) {
    return share <= 0.03928 ? share / 12.92 : std::pow((share + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * part(color.redF()) + 0.7152 * part(color.greenF()) + 0.0722 * part(color.blueF());
}

double contrastOf(const QPalette& palette, QPalette::ColorRole one, QPalette::ColorRole other) {
  const double a = luminance(palette.color(one));
  const double b = luminance(palette.color(other));
  return (std::max(a, b) + 0.05) / (std::min(a, b) + 0.05);
}

TEST(Palettes, TextIsReadInEachLook) {
  for (const Look look : {Look::Light, Look::Dark}) {
    for (const Contrast contrast : {Contrast::Usual, Contrast::High}) {
      const QPalette palette = paletteFor(look, contrast);
      const double least = contrast == Contrast::High ? 7.0 : 4.5;
      for (const auto ground : {QPalette::Window, QPalette::Base}) {
        EXPECT_GE(contrastOf(palette, QPalette::Text, ground), least);
        EXPECT_GE(contrastOf(palette, QPalette::PlaceholderText, ground), least);
        EXPECT_GE(contrastOf(palette, QPalette::Link, ground), 4.5);
      }
      EXPECT_GE(contrastOf(palette, QPalette::ButtonText, QPalette::Button), least);
      EXPECT_GE(contrastOf(palette, QPalette::HighlightedText, QPalette::Highlight), 4.5);
    }
  }
}

TEST(Palettes, EdgesStandOutInEachLook) {
  for (const Look look : {Look::Light, Look::Dark}) {
    for (const Contrast contrast : {Contrast::Usual, Contrast::High}) {
      const QPalette palette = paletteFor(look, contrast);
      for (const auto ground : {QPalette::Window, QPalette::Base})
        EXPECT_GE(contrastOf(palette, QPalette::Mid, ground), 3.0);
      EXPECT_GE(contrastOf(palette, QPalette::Highlight, QPalette::Window), 3.0);
    }
  }
}

TEST(Palettes, WithHighContrastEdgesAndWhatCannotBeUsedAreSeenToo) {
  for (const Look look : {Look::Light, Look::Dark}) {
    QPalette palette = paletteFor(look, Contrast::High);
    EXPECT_GE(contrastOf(palette, QPalette::Mid, QPalette::Window), 7.0);
    EXPECT_GE(contrastOf(palette, QPalette::Highlight, QPalette::Window), 3.0);
    palette.setCurrentColorGroup(QPalette::Disabled);
    EXPECT_GE(contrastOf(palette, QPalette::ButtonText, QPalette::Button), 4.5);
  }
}

// The toolkit's second drawing of it, a pixel to the side, is of this color.
TEST(Palettes, WhatCannotBeChosenInAMenuIsNotBlurred) {
  for (const Look look : {Look::Light, Look::Dark}) {
    for (const Contrast contrast : {Contrast::Usual, Contrast::High}) {
      const QPalette palette = paletteFor(look, contrast);
      EXPECT_EQ(palette.color(QPalette::Disabled, QPalette::Light), palette.color(QPalette::Base));
    }
  }
}

}  // namespace
}  // namespace halvorn
