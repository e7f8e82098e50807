// A window with a scroll area and three widgets in one place, for the tests of views.
//
//   ScrolledWidgets widgets;      // a document of 1000 x 2000 in a place of 200 x 100
//   widgets.show();               // returns when it is on the screen
//   widgets.placeAt({0, 500});    // 500 above the lower edge of the document
#pragma once

#include <gtest/gtest.h>

#include <QAbstractAnimation>
#include <QApplication>
#include <QElapsedTimer>
#include <QScrollArea>
#include <QScrollBar>
#include <QWindow>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "Platform/window/linux/QtWidgetView.h"

namespace halvorn {

class ScrolledWidgets : public QWidget {
 public:
  ScrolledWidgets() {
    resize(400, 300);
    area->setFrameShape(QFrame::NoFrame);
    area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    area->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    area->setGeometry(10, 10, 200, 100);
    document->resize(1000, 2000);
    part->setGeometry(0, 500, 500, 500);  // from 1000 to 1500, counted upwards
    area->setWidget(document);
    for (int i = 0; i < 3; ++i) {
      auto* sibling = new QWidget(holder);
      sibling->setGeometry(i * 10, i * 10, 50, 50);
      siblings.push_back(sibling);
    }
    holder->setGeometry(10, 150, 100, 100);
  }

  void show() {
    QWidget::show();
    EXPECT_TRUE(eventually([this] { return windowHandle() != nullptr && windowHandle()->isExposed(); }));
  }

  // Turns the event loop until the condition holds; false when it does not within the seconds.
  static bool eventually(const std::function<bool()>& condition, double seconds = 30) {
    QElapsedTimer timer;
    timer.start();
    while (!condition()) {
      if (static_cast<double>(timer.elapsed()) > seconds * 1000) return false;
      QApplication::processEvents(QEventLoop::AllEvents, 10);
    }
    return true;
  }

  [[nodiscard]] QScrollBar* across() const { return area->horizontalScrollBar(); }
  [[nodiscard]] QScrollBar* down() const { return area->verticalScrollBar(); }
  void placeAt(const Point& origin) {
    finishAnimations();
    across()->setValue(static_cast<int>(origin.x));
    down()->setValue(down()->maximum() - static_cast<int>(origin.y));
  }
  // Read from where the document really is.
  [[nodiscard]] Point origin() const {
    return {static_cast<double>(-document->x()),
            static_cast<double>(document->y() + document->height() - 100)};
  }

  [[nodiscard]] bool isAnimating() const {
    for (const auto* animation : findChildren<QAbstractAnimation*>()) {
      if (animation->state() == QAbstractAnimation::Running) return true;
    }
    return false;
  }
  void finishAnimations() {
    EXPECT_TRUE(eventually([this] { return !isAnimating(); }));
  }

  [[nodiscard]] std::vector<std::unique_ptr<QtWidgetView>> viewsOfSiblings() const {
    std::vector<std::unique_ptr<QtWidgetView>> views;
    for (QWidget* sibling : siblings) views.push_back(std::make_unique<QtWidgetView>(*sibling));
    return views;
  }
  [[nodiscard]] std::string order() const {
    std::string result;
    for (QObject* child : holder->children()) {
      for (std::size_t i = 0; i < siblings.size(); ++i) {
        if (siblings[i] == child) result += std::to_string(i);
      }
    }
    return result;
  }

  QScrollArea* area = new QScrollArea(this);
  QWidget* document = new QWidget;
  QWidget* part = new QWidget(document);
  QWidget* holder = new QWidget(this);
  std::vector<QWidget*> siblings;
};

}  // namespace halvorn
