// What the cases of the contract are asked of on Linux: appearances that a test sets, and those of the toolkit's widgets
// while they are painted.
#pragma once

#include <gtest/gtest.h>

#include <QApplication>
#include <QImage>
#include <QPainter>
#include <functional>
#include <memory>

#include "Platform/color/linux/DesktopAppearance.h"
#include "Platform/color/linux/QtGraphicsContext.h"
#include "Platform/window/linux/QtAppearances.h"
#include "Platform/window/linux/QtWidgetView.h"
#include "tests/fakes/FakeAppearances.h"
#include "tests/support/OffscreenApplication.h"

namespace halvorn {

[[maybe_unused]] inline OffscreenApplication& desktop = offscreenApplication();

using Act = std::function<void()>;

class FakeWorld {
 public:
  void setDesktop(AppearanceName name) { appearances_.effective = FakeAppearances::named(name); }
  Appearances& appearances() { return appearances_; }
  GraphicsContext& graphics() { return graphics_; }
  DeviceColor stroked() { return *graphics_.stroke; }
  DeviceColor filled() { return *graphics_.fill; }

  // Draws a view that is held to the appearance, and does this in the middle of it.
  void draw(AppearanceName held, const Act& act) {
    const AppearancePointer before = appearances_.current;
    appearances_.current =
        held == AppearanceName::Inherited ? appearances_.effective : FakeAppearances::named(held);
    act();
    appearances_.current = before;
  }
  void drawInside(AppearanceName holder, const Act& act) { draw(holder, act); }

 private:
  FakeAppearances appearances_;
  FakeGraphicsContext graphics_;
};

class ActingWidget : public QWidget {
 public:
  using QWidget::QWidget;
  Act act;

 protected:
  void paintEvent(QPaintEvent*) override {
    if (act) act();
  }
};

class RealWorld {
 public:
  RealWorld() { setDesktop(AppearanceName::Aqua); }
  void setDesktop(AppearanceName name) {
    appearances_.reset();
    const bool isDark = name == AppearanceName::DarkAqua;
    desktop_ = std::make_unique<DesktopAppearance>(isDark ? InterfaceStyle::Dark : InterfaceStyle::Light);
    appearances_ = std::make_unique<QtAppearances>(*desktop_);
  }
  Appearances& appearances() { return *appearances_; }
  GraphicsContext& graphics() { return graphics_; }
  // What a line and an area really look like.
  DeviceColor stroked() {
    painter_.drawLine(0, 5, 20, 5);
    return at(10, 5);
  }
  DeviceColor filled() {
    painter_.fillRect(0, 10, 20, 10, painter_.brush());
    return at(10, 15);
  }

  void draw(AppearanceName held, const Act& act) { paint(held, AppearanceName::Inherited, act); }
  void drawInside(AppearanceName holder, const Act& act) { paint(AppearanceName::Inherited, holder, act); }

 private:
  void paint(AppearanceName held, AppearanceName holder, const Act& act) {
    QWidget outer;
    auto* middle = new QWidget(&outer);
    auto* inner = new ActingWidget(middle);
    QtWidgetView(outer).setAppearance(holder);
    QtWidgetView(*inner).setAppearance(held);
    inner->act = act;
    static_cast<void>(outer.grab());
  }
  DeviceColor at(int x, int y) {
    const QColor color = image_.pixelColor(x, y);
    return {color.redF(), color.greenF(), color.blueF(), color.alphaF()};
  }

  std::unique_ptr<DesktopAppearance> desktop_;
  std::unique_ptr<QtAppearances> appearances_;
  QImage image_{20, 20, QImage::Format_ARGB32};
  QPainter painter_{&image_};
  QtGraphicsContext graphics_{painter_};
};

using AppearanceWorlds = testing::Types<FakeWorld, RealWorld>;

}  // namespace halvorn
