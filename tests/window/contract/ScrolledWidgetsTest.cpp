// What only the toolkit's views can show: the time an animation takes, layouts, texts, other directions.
#include <gtest/gtest.h>

#include <QHBoxLayout>
#include <QPointer>
#include <QTextEdit>
#include <QWheelEvent>
#include <set>

#include "KTStuff/CocoaExtensions/ViewExtensions.h"
#include "Platform/window/linux/QtViews.h"
#include "Platform/window/linux/WindowWidget.h"
#include "Platform/window/linux/readme/DocumentView.h"
#include "tests/window/contract/ScrolledWidgets.h"

namespace halvorn {
namespace {

using KTViewExtensions::PreferTop;

class ScrolledWidgetsTest : public testing::Test {
 protected:
  ScrolledWidgetsTest() { widgets.show(); }
  ScrolledWidgets widgets;
  QtWidgetView document{*widgets.document};
};

TEST_F(ScrolledWidgetsTest, TheyAreOnTheDisplayThatWasAskedFor) {
  const bool onDisplay = qEnvironmentVariableIsSet("KT_TEST_ON_DISPLAY");
  EXPECT_EQ(QGuiApplication::platformName(), onDisplay ? QStringLiteral("xcb") : QStringLiteral("offscreen"));
}

TEST_F(ScrolledWidgetsTest, AnAnimationTakesTimeGoesThroughPlacesBetweenAndEndsAtTheRightOne) {
  widgets.placeAt({300, 0});
  QElapsedTimer timer;
  timer.start();
  KTViewExtensions::scrollPointAnimated(document, {0, 1000});
  std::set<double> places;
  EXPECT_TRUE(ScrolledWidgets::eventually([&] {
    places.insert(widgets.origin().y);
    return !widgets.isAnimating();
  }));
  EXPECT_GE(timer.elapsed(), 200) << "the toolkit's animations last a quarter of a second";
  EXPECT_GT(places.size(), 3u) << "and nobody sees a jump";
  EXPECT_EQ(widgets.origin(), (Point{0, 1000}));
}

TEST_F(ScrolledWidgetsTest, AnAnimationByZeroIsOneAllTheSame) {
  widgets.placeAt({0, 500});
  QElapsedTimer timer;
  timer.start();
  EXPECT_TRUE(
      KTViewExtensions::animatedVerticalScrollRectToVisible(document, {0, 580, 10, 20}, PreferTop::No));
  widgets.finishAnimations();
  EXPECT_GE(timer.elapsed(), 200);
  EXPECT_EQ(widgets.origin(), (Point{0, 500}));
}

TEST_F(ScrolledWidgetsTest, FinishedAnimationsLeaveNothingBehind) {
  for (int i = 0; i < 5; ++i) KTViewExtensions::scrollPointAnimated(document, {0, 100.0 * i});
  widgets.finishAnimations();
  QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  EXPECT_TRUE(widgets.findChildren<QAbstractAnimation*>().empty());
}

TEST_F(ScrolledWidgetsTest, WhoeverTakesHoldOfTheScrollBarStopsTheAnimation) {
  widgets.placeAt({0, 0});
  KTViewExtensions::scrollPointAnimated(document, {0, 1900});
  EXPECT_TRUE(ScrolledWidgets::eventually([&] { return widgets.origin().y > 100; }));
  widgets.down()->triggerAction(QAbstractSlider::SliderToMaximum);
  EXPECT_FALSE(widgets.isAnimating());
  EXPECT_EQ(widgets.origin().y, 0) << "the lower end, where the bar was taken";
}

TEST_F(ScrolledWidgetsTest, TheWheelStopsTheAnimationToo) {
  widgets.placeAt({0, 0});
  KTViewExtensions::scrollPointAnimated(document, {0, 1900});
  EXPECT_TRUE(ScrolledWidgets::eventually([&] { return widgets.origin().y > 100; }));
  QWidget* place = widgets.area->viewport();
  QWheelEvent turn({5, 5}, place->mapToGlobal(QPointF(5, 5)), {0, 0}, {0, -120}, Qt::NoButton, Qt::NoModifier,
                   Qt::NoScrollPhase, false);
  QApplication::sendEvent(place, &turn);
  EXPECT_FALSE(widgets.isAnimating());
}

TEST_F(ScrolledWidgetsTest, AViewThatEndsTakesItsAnimationAlong) {
  auto other = std::make_unique<ScrolledWidgets>();
  other->show();
  QtWidgetView otherDocument(*other->document);
  KTViewExtensions::scrollPointAnimated(otherDocument, {0, 1900});
  ASSERT_TRUE(other->isAnimating());
  const QPointer<QAbstractAnimation> animation = other->findChild<QAbstractAnimation*>();
  other.reset();
  EXPECT_TRUE(animation.isNull());
  for (int i = 0; i < 20; ++i) QApplication::processEvents(QEventLoop::AllEvents, 10);
  EXPECT_FALSE(widgets.isAnimating());
}

TEST_F(ScrolledWidgetsTest, InAnInterfaceFromRightToLeftTheHorizontalOffsetIsCountedFromTheLeftToo) {
  widgets.area->setLayoutDirection(Qt::RightToLeft);
  widgets.across()->setValue(1);  // has the area place its document anew
  EXPECT_TRUE(document.scrollRectToVisible({300, 700, 10, 10}));
  const Point there = widgets.origin();
  EXPECT_LE(there.x, 300);
  EXPECT_GE(there.x + 200, 310);
  EXPECT_EQ(document.visibleRect().x, there.x);
  KTViewExtensions::scrollPointAnimated(document, {120, 400});
  widgets.finishAnimations();
  EXPECT_EQ(widgets.origin(), (Point{120, 400}));
}

TEST_F(ScrolledWidgetsTest, ADocumentSmallerThanItsPlaceHasNowhereToScroll) {
  widgets.document->resize(100, 50);
  QApplication::processEvents();
  KTViewExtensions::scrollPointAnimated(document, {500, 500});
  widgets.finishAnimations();
  EXPECT_EQ(document.visibleRect(), (Rect{0, 0, 100, 50}));
  EXPECT_FALSE(document.scrollRectToVisible({0, 0, 100, 50}));
}

TEST_F(ScrolledWidgetsTest, AViewInALayoutKeepsItsPlaceThereWhenItComesToTheFront) {
  QWidget row;
  auto* layout = new QHBoxLayout(&row);
  std::vector<QWidget*> all;
  for (int i = 0; i < 3; ++i) {
    all.push_back(new QWidget(&row));
    all.back()->setMinimumSize(30 + i, 20);
    layout->addWidget(all.back(), i);
  }
  row.resize(300, 60);
  row.show();
  QApplication::processEvents();
  std::vector<QRect> before;
  for (const QWidget* widget : all) before.push_back(widget->geometry());
  QtWidgetView first(*all[0]);
  KTViewExtensions::bringToFrontInsideSuperView(first);
  QApplication::processEvents();
  EXPECT_EQ(layout->count(), 3);
  EXPECT_EQ(layout->indexOf(all[0]), 0);
  for (std::size_t i = 0; i < all.size(); ++i) EXPECT_EQ(all[i]->geometry(), before[i]) << i;
  EXPECT_TRUE(all[0]->isVisible());
  EXPECT_EQ(row.children().last(), all[0]);
  EXPECT_EQ(row.findChildren<QWidget*>().size(), 3) << "nothing is left to keep the place";
}

TEST_F(ScrolledWidgetsTest, AViewThatWasTakenOutIsNotDrawnAndMayGoElsewhere) {
  QtWidgetView sibling(*widgets.siblings[0]);
  sibling.removeFromSuperviewWithoutNeedingDisplay();
  EXPECT_FALSE(widgets.siblings[0]->isVisible());
  QtWidgetView(widgets).addSubview(sibling, ViewPosition::Above, nullptr);
  EXPECT_TRUE(widgets.siblings[0]->isVisible());
  EXPECT_EQ(widgets.siblings[0]->parentWidget(), &widgets);
}

TEST_F(ScrolledWidgetsTest, ATextViewIsItsOwnDocument) {
  WindowWidget window;
  auto* text = new DocumentView(&window);
  text->setGeometry(0, 0, 200, 100);
  text->setPlainText(QString(QStringLiteral("line\n")).repeated(200));
  window.show();
  EXPECT_TRUE(ScrolledWidgets::eventually([&] { return text->verticalScrollBar()->maximum() > 500; }));
  QtTextView view(window, *text);
  const double top = view.visibleRect().y;
  EXPECT_EQ(top, text->verticalScrollBar()->maximum()) << "the beginning is the upper end";
  EXPECT_TRUE(KTViewExtensions::animatedVerticalScrollRectToVisible(view, {0, 0, 10, 10}, PreferTop::No));
  EXPECT_TRUE(ScrolledWidgets::eventually([&] { return view.visibleRect().y == 0; }));
  EXPECT_EQ(text->verticalScrollBar()->value(), text->verticalScrollBar()->maximum());
  EXPECT_TRUE(view.scrollRectToVisible({0, top, 10, 10}));
  EXPECT_GT(view.visibleRect().y, top - 100);
}

}  // namespace
}  // namespace halvorn
