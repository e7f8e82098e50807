// A sheet that stands inside its window.
#include "Platform/window/linux/AlertSheet.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QKeyEvent>
#include <QVBoxLayout>
#include <vector>

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
