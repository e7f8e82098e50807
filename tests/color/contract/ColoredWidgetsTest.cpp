// Dynamic colors in the toolkit's widgets: which variant is on the screen.
#include <gtest/gtest.h>

#include <QApplication>
#include <QPainter>
#include <QScrollBar>
#include <functional>
#include <map>
#include <memory>

#include "KTStuff/CocoaExtensions/ViewExtensions.h"
#include "KTStuff/KTClasses/KTDynamicColorClass.h"
#include "KTStuff/KTClasses/KTUtilitiesTheme.h"
#include "KTStuff/KTClasses/PlainColor.h"
#include "Platform/color/linux/DesktopAppearance.h"
#include "Platform/color/linux/QtGraphicsContext.h"
#include "Platform/color/linux/QtInterfaceStyle.h"
#include "Platform/window/linux/InstallerWindow.h"
#include "Platform/window/linux/QtAppearances.h"
#include "Platform/window/linux/QtWidgetView.h"
#include "Platform/window/linux/WindowWidget.h"
#include "Platform/window/linux/pictures/QtImages.h"
#include "Platform/window/linux/readme/DocumentView.h"
#include "tests/fakes/FakeBundles.h"
#include "tests/fakes/FakeDefaults.h"
#include "tests/fakes/FakeLocalizedDates.h"
#include "tests/fakes/FakeLocalizedStrings.h"
#include "tests/fakes/FakeSystemFacts.h"
#include "tests/fakes/FakeUnicode.h"
#include "tests/fakes/RecordingLog.h"

namespace halvorn {
namespace {

using KTViewExtensions::LightAqua;
using KTViewExtensions::useLightAquaAppearance;

constexpr QRgb kLight = 0xFF20C040;
constexpr QRgb kDark = 0xFFC02080;

ColorPointer colorOf(QRgb color) {
  return PlainColor::deviceRGB(qRed(color) / 255.0, qGreen(color) / 255.0, qBlue(color) / 255.0);
}

// A desktop of that style with the window of the resources.
class ColoredWindow {
 public:
  explicit ColoredWindow(InterfaceStyle style) : desktop_(style) {
    window_ = InstallerWindow::load(KT_SOURCE_DIR "/Resources/InstallerWindow.xml", strings_, images_).window;
    outlets().tabView.selectItem(0);
    window_->widget().show();
    outlets().readMeTextView.setBackgroundColor(color);
    outlets().introField.setTextColor(color);
  }

  InstallerOutlets outlets() { return window_->outlets(); }
  QWidget& widget(const char* id) { return *window_->widget().find<QWidget>(QLatin1String(id)); }
  // How many pixels of the view have exactly that color.
  int pixels(const char* id, QRgb wanted) {
    QApplication::processEvents();
    const QImage image = widget(id).grab().toImage();
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
      for (int x = 0; x < image.width(); ++x) count += image.pixel(x, y) == wanted ? 1 : 0;
    }
    return count;
  }
  // The variant that the view shows: 'L', 'D' or '?'.
  char shown(const char* id) {
    const bool light = pixels(id, kLight) > 0;
    const bool dark = pixels(id, kDark) > 0;
    return light == dark ? '?' : light ? 'L' : 'D';
  }

  RecordingLog log;
  FakeSystemFacts system;

 private:
  FakeBundles bundles_;
  FakeUnicode unicode_;
  FakeLocalizedDates dates_;
  FakeDefaults defaults_;
  FakeLocalizedStrings strings_;
  QtImages images_{KT_SOURCE_DIR "/Resources"};
  DesktopAppearance desktop_;
  QtAppearances appearances_{desktop_};
  QtInterfaceStyle style_{desktop_};
  KTUtilitiesVersions versions_{bundles_, system, unicode_, dates_, log};
  KTUtilitiesTheme theme_{versions_, defaults_, style_};
  KTDynamicColorClass colors_{{.appearances = appearances_, .theme = theme_, .system = system, .log = log}};
  std::unique_ptr<InstallerWindow> window_;

 public:
  const std::shared_ptr<KTDynamicColor> color = colors_.lightColor(colorOf(kLight), colorOf(kDark));
};

TEST(ColoredWidgets, ATextViewAndATextFieldShowTheVariantOfTheDesktop) {
  for (const auto& [style, variant] :
       {std::pair{InterfaceStyle::Light, 'L'}, std::pair{InterfaceStyle::Dark, 'D'}}) {
    ColoredWindow window(style);
    EXPECT_EQ(window.shown("readMeTextView"), variant);
    window.outlets().tabView.selectItem(1);
    EXPECT_EQ(window.shown("introField"), variant);
  }
}

TEST(ColoredWidgets, AViewForcedToLightStaysLightOnADarkDesktopUntilItInheritsAgain) {
  ColoredWindow window(InterfaceStyle::Dark);
  useLightAquaAppearance(window.outlets().readMeTextView, LightAqua::Yes, window.system);
  EXPECT_EQ(window.shown("readMeTextView"), 'L');
  useLightAquaAppearance(window.outlets().readMeTextView, LightAqua::No, window.system);
  EXPECT_EQ(window.shown("readMeTextView"), 'D');
  EXPECT_EQ(window.log.lines(), std::vector<std::string>{});
}

TEST(ColoredWidgets, WhatAViewForcedToLightHoldsIsLightToo) {
  ColoredWindow window(InterfaceStyle::Dark);
  useLightAquaAppearance(window.outlets().tabView, LightAqua::Yes, window.system);
  EXPECT_EQ(window.shown("readMeTextView"), 'L');
  window.outlets().tabView.selectItem(1);
  EXPECT_EQ(window.shown("introField"), 'L');
}

TEST(ColoredWidgets, WithTheGlobalFlagAViewForcedToLightIsDarkOnADarkDesktopAndEachPaintingIsLogged) {
  ColoredWindow window(InterfaceStyle::Dark);
  useLightAquaAppearance(window.outlets().readMeTextView, LightAqua::Yes, window.system);
  window.color->useGlobalAppearance(UseGlobalAppearance::Yes);
  EXPECT_EQ(window.shown("readMeTextView"), 'D');
  const auto lines = window.log.lines();
  ASSERT_GE(lines.size(), 2u);
  for (const std::string& line : lines) EXPECT_EQ(line, "global dark color");
}

TEST(ColoredWidgets, OnASystemOlderThan10_14AllIsLight) {
  ColoredWindow window(InterfaceStyle::Dark);
  window.system.framework = 1561.6;
  window.color->useGlobalAppearance(UseGlobalAppearance::Yes);
  EXPECT_EQ(window.shown("readMeTextView"), 'L');
}

TEST(ColoredWidgets, WithoutAColorThatOfTheAppearanceIsBack) {
  ColoredWindow window(InterfaceStyle::Light);
  window.outlets().readMeTextView.setBackgroundColor(nullptr);
  window.outlets().introField.setTextColor(nullptr);
  EXPECT_EQ(window.shown("readMeTextView"), '?');
  EXPECT_GT(window.pixels("readMeTextView", 0xFFFFFFFF), 1000) << "white paper";
  window.outlets().tabView.selectItem(1);
  EXPECT_EQ(window.shown("introField"), '?');
}

TEST(ColoredWidgets, PlainColorsAreAcceptedWhereverDynamicOnesAre) {
  ColoredWindow window(InterfaceStyle::Dark);
  window.outlets().readMeTextView.setBackgroundColor(colorOf(kLight));
  EXPECT_EQ(window.shown("readMeTextView"), 'L');
}

TEST(ColoredWidgets, TheTextOfATextViewHasTheVariantToo) {
  for (const auto& [style, variant] :
       {std::pair{InterfaceStyle::Light, 'L'}, std::pair{InterfaceStyle::Dark, 'D'}}) {
    ColoredWindow window(style);
    ASSERT_TRUE(window.outlets().readMeTextView.setDocumentFromFile(KT_SOURCE_DIR "/README.md"));
    window.outlets().readMeTextView.setBackgroundColor(nullptr);
    EXPECT_EQ(window.shown("readMeTextView"), '?');
    window.outlets().readMeTextView.setTextColor(window.color);
    EXPECT_EQ(window.shown("readMeTextView"), variant);
  }
}

TEST(ColoredWidgets, ATextInTheColorOfItsAppearanceIsDrawnAsWithoutOne) {
  ColoredWindow window(InterfaceStyle::Light);
  TextView& view = window.outlets().readMeTextView;
  ASSERT_TRUE(view.setDocumentFromFile(KT_SOURCE_DIR "/README.md"));
  auto& widget = dynamic_cast<DocumentView&>(window.widget("readMeTextView"));
  const auto picture = [&] {
    QApplication::processEvents();
    return widget.viewport()->grab().toImage();
  };
  for (const auto& prepare : {std::function<void()>([] {}),
                              std::function<void()>([&] { widget.verticalScrollBar()->setValue(157); }),
                              std::function<void()>([&] { widget.selectAll(); })}) {
    prepare();
    view.setTextColor(nullptr);
    const QImage without = picture();
    view.setTextColor(colorOf(widget.palette().color(QPalette::Text).rgb()));
    EXPECT_EQ(picture(), without);
    if (widget.textCursor().hasSelection()) continue;  // all of it, in the selection's own color
    view.setTextColor(window.color);
    EXPECT_NE(picture(), without);
  }
}

TEST(ColoredWidgets, WhatAProgramDrawsItselfHasTheVariantOfTheWidgetItDrawsIn) {
  class Drawn : public QWidget {
   public:
    using QWidget::QWidget;
    std::shared_ptr<KTDynamicColor> color;

   protected:
    void paintEvent(QPaintEvent*) override {
      QPainter painter(this);
      QtGraphicsContext context(painter);
      color->set(context);
      painter.drawRect(10, 10, 30, 30);
    }
  };
  ColoredWindow window(InterfaceStyle::Dark);
  Drawn drawn;
  drawn.resize(50, 50);
  drawn.color = window.color;
  EXPECT_EQ(drawn.grab().toImage().pixel(20, 20), kDark);
  EXPECT_EQ(drawn.grab().toImage().pixel(10, 20), kDark) << "the line";
  useLightAquaAppearance(*std::make_unique<QtWidgetView>(drawn), LightAqua::Yes, window.system);
  EXPECT_EQ(drawn.grab().toImage().pixel(20, 20), kLight);
  EXPECT_EQ(drawn.grab().toImage().pixel(10, 20), kLight);
}

}  // namespace
}  // namespace halvorn
