// A sheet that stands inside its window.
#include "Platform/window/linux/AlertSheet.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QKeyEvent>
#include <QScreen>
#include <QScrollBar>
#include <QVBoxLayout>
#include <vector>

#include "Platform/window/linux/PageScroller.h"
#include "Platform/window/linux/pictures/PictureLabel.h"

namespace halvorn {
namespace {

class SheetInside : public testing::Test {
 protected:
  void SetUp() override {
    window.setLayout(new QVBoxLayout);
    for (QAbstractButton* each :
         {static_cast<QAbstractButton*>(&below), static_cast<QAbstractButton*>(&off)}) {
      window.layout()->addWidget(each);
      QObject::connect(each, &QAbstractButton::clicked, [this] { ++clicksBelow; });
    }
    off.setEnabled(false);
    window.resize(800, 500);
    window.show();
    window.activateWindow();
    below.setFocus();
    AlertDescription alert;
    alert.messageText = "A newer system is needed.";
    alert.informativeText = "This one is too old.";
    alert.buttonTitles = {"Quit", "Visit Archive"};
    sheet = new AlertSheet(
        alert, &window, [this](int code) { answers.push_back(code); }, SheetPlace::InsideWindow);
    sheet->open();
    QApplication::processEvents();
  }
  void TearDown() override {
    window.close();
    QApplication::processEvents();
  }
  static void press(Qt::Key key) {
    QWidget* const target = QApplication::focusWidget();
    ASSERT_NE(target, nullptr);
    for (const auto type : {QEvent::KeyPress, QEvent::KeyRelease}) {
      QKeyEvent event(type, key, Qt::NoModifier);
      QApplication::sendEvent(target, &event);
    }
    QApplication::processEvents();
  }

  QWidget window{nullptr, Qt::Window};
  class Button : public QAbstractButton {
    void paintEvent(QPaintEvent*) override {}
  } below, off;
  QPointer<AlertSheet> sheet;
  std::vector<int> answers;
  int clicksBelow = 0;
};

TEST_F(SheetInside, IsNoWindowAndLiesWhollyInIts) {
  EXPECT_FALSE(sheet->isWindow());
  EXPECT_TRUE(sheet->isVisible());
  EXPECT_TRUE(window.rect().contains(sheet->geometry()));
  EXPECT_NEAR(sheet->geometry().center().x(), window.rect().center().x(), 1);
}

TEST_F(SheetInside, MakesAWindowThatIsTooSmallGrow) {
  window.resize(200, 80);
  QApplication::processEvents();
  EXPECT_TRUE(window.rect().contains(sheet->geometry()))
      << window.width() << "x" << window.height() << ", " << sheet->width() << "x" << sheet->height();
}

TEST_F(SheetInside, ItsPictureHasAName) {
  int pictures = 0;
  for (const auto* label : sheet->findChildren<QLabel*>()) {
    if (dynamic_cast<const PictureLabel*>(label) == nullptr) continue;
    ++pictures;
    EXPECT_EQ(label->accessibleName(), "Warning");
  }
  EXPECT_EQ(pictures, 1);
}

// The texts of a small screen's alert are more than it can show; the buttons are there nevertheless.
TEST_F(SheetInside, ScrollsItsTextsByKeyWhereTheScreenIsTooSmall) {
  QFont huge = sheet->font();
  huge.setPointSize(90);
  for (QWidget* each : sheet->findChildren<QWidget*>()) each->setFont(huge);
  window.resize(window.size() - QSize(1, 0));
  QApplication::processEvents();
  const auto* texts = sheet->findChild<PageScroller*>();
  ASSERT_NE(texts, nullptr);
  EXPECT_LE(window.height(), window.screen()->availableGeometry().height());
  EXPECT_LE(window.width(), window.screen()->availableGeometry().width());
  EXPECT_TRUE(window.rect().contains(sheet->geometry()));
  for (const auto* button : sheet->findChildren<QAbstractButton*>())
    EXPECT_TRUE(sheet->rect().contains(QRect(button->mapTo(sheet, QPoint()), button->size())));
  ASSERT_GT(texts->verticalScrollBar()->maximum(), 0);
  press(Qt::Key_End);
  EXPECT_EQ(texts->verticalScrollBar()->value(), texts->verticalScrollBar()->maximum());
  press(Qt::Key_PageUp);
  EXPECT_LT(texts->verticalScrollBar()->value(), texts->verticalScrollBar()->maximum());
}

TEST_F(SheetInside, KeepsItsWindowFromBeingUsedUntilItIsAnswered) {
  EXPECT_FALSE(below.isEnabled());
  below.click();
  EXPECT_EQ(clicksBelow, 0);
  sheet->findChildren<QAbstractButton*>().at(1)->click();
  QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  EXPECT_EQ(answers, std::vector<int>{kAlertFirstButtonReturn + 1});
  EXPECT_EQ(sheet, nullptr);
  EXPECT_TRUE(below.isEnabled());
  EXPECT_FALSE(off.isEnabled()) << "what could not be used before cannot now";
  EXPECT_EQ(window.focusWidget(), &below);
}

TEST_F(SheetInside, HasTheKeyboardAndTheTabKeyStaysInIt) {
  const auto buttons = sheet->findChildren<QAbstractButton*>();
  ASSERT_EQ(buttons.size(), 2);
  EXPECT_EQ(window.focusWidget(), buttons[0]);
  for (const int expected : {1, 0, 1}) {
    press(Qt::Key_Tab);
    EXPECT_EQ(window.focusWidget(), buttons[expected]);
  }
  press(Qt::Key_Backtab);
  EXPECT_EQ(window.focusWidget(), buttons[0]);
  EXPECT_TRUE(answers.empty());
}

TEST_F(SheetInside, ReturnPressesTheFirstButton) {
  press(Qt::Key_Return);
  EXPECT_EQ(answers, std::vector<int>{kAlertFirstButtonReturn});
}

TEST_F(SheetInside, EscapeCountsAsTheFirstButton) {
  press(Qt::Key_Escape);
  EXPECT_EQ(answers, std::vector<int>{kAlertFirstButtonReturn});
}

TEST_F(SheetInside, ClosingItsWindowCountsAsTheFirstButtonAndLeavesTheWindow) {
  EXPECT_FALSE(window.close());
  EXPECT_EQ(answers, std::vector<int>{kAlertFirstButtonReturn});
  EXPECT_TRUE(window.isVisible());
  QApplication::processEvents();
  EXPECT_TRUE(window.close()) << "without a sheet it closes";
}

}  // namespace
}  // namespace halvorn
