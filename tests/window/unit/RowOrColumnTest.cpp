#include "Platform/window/linux/RowOrColumn.h"

#include <gtest/gtest.h>

#include <QWidget>

namespace halvorn {
namespace {

class RowOrColumnOf : public testing::Test {
 protected:
  RowOrColumnOf() {
    fixed_->setFixedSize(100, 20);
    free_->setMinimumSize(10, 10);
    auto* layout = new RowOrColumn(20);
    layout->setSpacing(10);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(fixed_);
    layout->addWidget(free_, 1);
    window_.setLayout(layout);
    least_ = 110 + 20 * window_.fontMetrics().averageCharWidth();
  }
  QWidget window_;
  QWidget* fixed_ = new QWidget;
  QWidget* free_ = new QWidget;
  int least_ = 0;
};

TEST_F(RowOrColumnOf, StandsSideBySideWhereThereIsRoom) {
  window_.setGeometry(0, 0, least_, 100);
  window_.layout()->activate();
  EXPECT_EQ(fixed_->x(), 0);
  EXPECT_EQ(free_->geometry().left(), 110);
  EXPECT_EQ(free_->geometry().right(), least_ - 1);
}

TEST_F(RowOrColumnOf, StandsBelowEachOtherWhereThereIsNot) {
  window_.setGeometry(0, 0, least_ - 1, 100);
  window_.layout()->activate();
  EXPECT_EQ(free_->x(), 0);
  EXPECT_EQ(free_->y(), 30);
  EXPECT_EQ(free_->width(), least_ - 1);
}

TEST_F(RowOrColumnOf, TurnsAroundWithTheDirectionOfWriting) {
  window_.setLayoutDirection(Qt::RightToLeft);
  window_.setGeometry(0, 0, least_, 100);
  window_.layout()->activate();
  EXPECT_EQ(fixed_->geometry().right(), least_ - 1);
  EXPECT_EQ(free_->x(), 0);
}

TEST_F(RowOrColumnOf, LeavesNoGapForWhatIsHidden) {
  fixed_->hide();
  window_.setGeometry(0, 0, least_, 100);
  window_.layout()->activate();
  EXPECT_EQ(free_->x(), 0);
}

}  // namespace
}  // namespace halvorn
