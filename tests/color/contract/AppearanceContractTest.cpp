// The same cases against appearances that a test sets and against those of the
// toolkit's widgets while they are painted.
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
namespace {

[[maybe_unused]] OffscreenApplication& desktop = offscreenApplication();

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

template <typename World>
class AppearanceContract : public testing::Test {
 protected:
  using Name = std::optional<AppearanceName>;
  static Name bestMatch(const AppearancePointer& appearance,
                        const std::vector<AppearanceName>& names = {AppearanceName::Aqua,
                                                                    AppearanceName::DarkAqua}) {
    return appearance ? appearance->bestMatchFromAppearancesWithNames(names) : std::nullopt;
  }
  // In the middle of drawing a view that is held to the appearance.
  Name whileDrawing(AppearanceName held) {
    Name found;
    world.draw(held, [&] { found = bestMatch(world.appearances().currentAppearance()); });
    return found;
  }
  World world;
};
using Worlds = testing::Types<FakeWorld, RealWorld>;
TYPED_TEST_SUITE(AppearanceContract, Worlds);

constexpr AppearanceName kAqua = AppearanceName::Aqua;
constexpr AppearanceName kDarkAqua = AppearanceName::DarkAqua;

TYPED_TEST(AppearanceContract, WhileNothingIsDrawnThereIsNoCurrentAppearance) {
  EXPECT_EQ(this->world.appearances().currentAppearance(), nullptr);
  EXPECT_EQ(this->whileDrawing(kAqua), kAqua);
  EXPECT_EQ(this->world.appearances().currentAppearance(), nullptr) << "nor is there one afterwards";
}

TYPED_TEST(AppearanceContract, TheApplicationHasThatOfTheDesktop) {
  EXPECT_EQ(this->bestMatch(this->world.appearances().effectiveAppearance()), kAqua);
  this->world.setDesktop(kDarkAqua);
  EXPECT_EQ(this->bestMatch(this->world.appearances().effectiveAppearance()), kDarkAqua);
}

TYPED_TEST(AppearanceContract, AnAppearanceFitsItsOwnNameAndNoOther) {
  const auto light = this->world.appearances().effectiveAppearance();
  EXPECT_EQ(this->bestMatch(light, {kDarkAqua, kAqua}), kAqua);
  EXPECT_EQ(this->bestMatch(light, {kDarkAqua}), std::nullopt);
  EXPECT_EQ(this->bestMatch(light, {}), std::nullopt);
}

TYPED_TEST(AppearanceContract, AViewThatIsDrawnHasTheAppearanceItIsHeldTo) {
  for (const auto desktopName : {kAqua, kDarkAqua}) {
    this->world.setDesktop(desktopName);
    EXPECT_EQ(this->whileDrawing(kAqua), kAqua);
    EXPECT_EQ(this->whileDrawing(kDarkAqua), kDarkAqua);
    EXPECT_EQ(this->whileDrawing(AppearanceName::Inherited), desktopName);
  }
}

TYPED_TEST(AppearanceContract, AViewInsideOfOneThatIsHeldToAnAppearanceHasIt) {
  this->world.setDesktop(kDarkAqua);
  std::optional<AppearanceName> found;
  this->world.drawInside(kAqua,
                         [&] { found = this->bestMatch(this->world.appearances().currentAppearance()); });
  EXPECT_EQ(found, kAqua);
}

TYPED_TEST(AppearanceContract, ADrawingWithinADrawingHasItsOwnAndAfterItTheOuterOneCountsAgain) {
  std::vector<std::optional<AppearanceName>> seen;
  const auto look = [&] { seen.push_back(this->bestMatch(this->world.appearances().currentAppearance())); };
  this->world.draw(kAqua, [&] {
    look();
    this->world.draw(kDarkAqua, look);
    look();
  });
  EXPECT_EQ(seen, (std::vector<std::optional<AppearanceName>>{kAqua, kDarkAqua, kAqua}));
}

TYPED_TEST(AppearanceContract, AStrokeColorIsThatOfLinesAndAFillColorThatOfAreas) {
  const DeviceColor red{1, 0, 0, 1};
  const DeviceColor blue{0, 0, 1, 1};
  this->world.graphics().setStrokeColor(red);
  this->world.graphics().setFillColor(blue);
  EXPECT_EQ(this->world.stroked(), red);
  EXPECT_EQ(this->world.filled(), blue);
  this->world.graphics().setStrokeColor(blue);
  EXPECT_EQ(this->world.stroked(), blue);
  EXPECT_EQ(this->world.filled(), blue);
}

}  // namespace
}  // namespace halvorn
