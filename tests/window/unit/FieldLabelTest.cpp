#include "Platform/window/linux/FieldLabel.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QMenu>
#include <QMouseEvent>

namespace halvorn {
namespace {

TEST(FieldLabel, AWordLongerThanALineIsBroken) {
  FieldLabel label;
  label.setFieldText(QString(200, u'W'));
  EXPECT_GT(label.heightForWidth(300), label.heightForWidth(3000));
  EXPECT_LT(label.minimumSizeHint().width(), 300);
}

TEST(FieldLabel, TooManyLinesEndInAnEllipsisAndATip) {
  FieldLabel label;
  label.setMaximumLines(2);
  label.setFieldText(QStringLiteral("one\ntwo\nthree"));
  label.resize(300, label.heightForWidth(300));
  label.grab();
  EXPECT_EQ(label.toolTip(), QStringLiteral("one\ntwo\nthree"));
  label.setFieldText(QStringLiteral("one"));
  label.resize(301, label.heightForWidth(301));
  EXPECT_TRUE(label.toolTip().isEmpty());
}

TEST(FieldLabel, APathLosesItsMiddleAndANameKeepsItsVersion) {
  FieldLabel label;
  label.setMaximumLines(2);
  label.setLoses(FieldLabel::Loses::Middle);
  label.setFieldText(QStringLiteral("Sample ") + QString(300, u'w') + QStringLiteral(" 2.1b3"));
  label.resize(300, label.heightForWidth(300));
  label.show();
  const QStringList lines = label.linesShown();
  ASSERT_EQ(lines.size(), 2);
  EXPECT_TRUE(lines.first().startsWith(QStringLiteral("Sample ww")));
  EXPECT_TRUE(lines.last().endsWith(QStringLiteral("w 2.1b3")));
  EXPECT_EQ(lines.join(QString()).count(u'\u2026'), 1);
  EXPECT_GT(lines.join(QString()).size(), 40) << "as much as the lines hold";
  EXPECT_EQ(label.toolTip(), label.text());
  label.setFieldText(QStringLiteral("Sample 2.1b3"));
  EXPECT_EQ(label.linesShown(), QStringList{QStringLiteral("Sample 2.1b3")});
  EXPECT_TRUE(label.toolTip().isEmpty());
  label.setFieldText(QString(300, u'w'));
  EXPECT_EQ(label.toolTip(), label.text()) << "told without another size";
}

TEST(FieldLabel, NoCharacterIsCutInTwo) {
  FieldLabel label;
  label.setMaximumLines(1);
  label.setLoses(FieldLabel::Loses::Middle);
  label.setFieldText(QStringLiteral("e\u0301").repeated(300) + QString::fromUtf8("😌").repeated(300));
  for (int width = 100; width < 140; ++width) {
    label.resize(width, 30);
    const QString shown = label.linesShown().join(QString());
    const qsizetype at = shown.indexOf(u'\u2026');
    ASSERT_GT(at, 0);
    ASSERT_LT(at, shown.size() - 1);
    EXPECT_EQ(shown.at(at - 1), QChar(u'\u0301')) << width;
    EXPECT_TRUE(shown.at(at + 1).isHighSurrogate()) << width;
  }
}

TEST(FieldLabel, NoLineIsWiderThanOneCanRead) {
  FieldLabel label;
  label.setFieldText(QStringLiteral("word ").repeated(100));
  label.resize(4000, 100);
  for (const QString& line : label.linesShown()) EXPECT_LE(line.size(), 130);
}

TEST(FieldLabel, AMenuCopiesTheWholeText) {
  FieldLabel label;
  label.setFieldText(QStringLiteral("/home/anna/Applications/Sample Studio"));
  label.setMaximumLines(1);
  label.resize(60, 30);
  label.show();
  QGuiApplication::clipboard()->clear();
  QContextMenuEvent event(QContextMenuEvent::Mouse, QPoint(5, 5), label.mapToGlobal(QPoint(5, 5)));
  QApplication::sendEvent(&label, &event);
  auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
  ASSERT_NE(menu, nullptr);
  ASSERT_EQ(menu->actions().size(), 2);
  EXPECT_EQ(menu->actions().front()->text(), "&Copy");
  menu->actions().front()->trigger();
  EXPECT_EQ(QGuiApplication::clipboard()->text(), "/home/anna/Applications/Sample Studio");
  menu->close();
}

TEST(FieldLabel, AnEmptyTextHasNoMenu) {
  FieldLabel label;
  QContextMenuEvent event(QContextMenuEvent::Mouse, QPoint(5, 5), QPoint(5, 5));
  QApplication::sendEvent(&label, &event);
  EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
}

// A drag of the left button from one place of a label to another.
void drag(FieldLabel& label, const QPoint& from, const QPoint& to) {
  const auto send = [&label](QEvent::Type type, const QPoint& at, Qt::MouseButtons held) {
    const bool moves = type == QEvent::MouseMove;
    QMouseEvent event(type, at, label.mapToGlobal(at), moves ? Qt::NoButton : Qt::LeftButton, held,
                      Qt::NoModifier);
    QApplication::sendEvent(&label, &event);
  };
  send(QEvent::MouseButtonPress, from, Qt::LeftButton);
  send(QEvent::MouseMove, to, Qt::LeftButton);
  send(QEvent::MouseButtonRelease, to, Qt::NoButton);
}

int middleOfLine(const FieldLabel& label, int line) {
  const int height = label.heightForWidth(label.width()) / static_cast<int>(label.linesShown().size());
  return line * height + height / 2;
}

TEST(FieldLabel, TheMouseMarksWhatItIsDrawnOver) {
  FieldLabel label;
  label.setFieldText(QStringLiteral("one two\nthree"));
  label.resize(300, label.heightForWidth(300));
  const int one = label.fontMetrics().horizontalAdvance(QStringLiteral("one"));
  drag(label, {0, middleOfLine(label, 0)}, {one, middleOfLine(label, 0)});
  EXPECT_EQ(label.markedText(), QStringLiteral("one"));
  const QImage before = label.grab().toImage();
  drag(label, {299, middleOfLine(label, 1)}, {one, middleOfLine(label, 0)});
  EXPECT_EQ(label.markedText(), QStringLiteral(" two\nthree")) << "backwards over two lines";
  EXPECT_NE(label.grab().toImage(), before) << "it is seen";
  drag(label, {0, -5}, {0, 500});
  EXPECT_EQ(label.markedText(), label.text()) << "beyond its edges";
  label.setFieldText(QStringLiteral("four"));
  EXPECT_EQ(label.markedText(), QString());
}

TEST(FieldLabel, WhatIsLostBetweenMarkedPlacesIsMarkedToo) {
  FieldLabel label;
  label.setMaximumLines(2);
  label.setLoses(FieldLabel::Loses::Middle);
  label.setFieldText(QStringLiteral("/begin/") + QString(500, u'w') + QStringLiteral("/end"));
  label.resize(300, label.heightForWidth(300));
  drag(label, {0, middleOfLine(label, 0)}, {299, middleOfLine(label, 1)});
  EXPECT_EQ(label.markedText(), label.text());
  const int end = label.fontMetrics().horizontalAdvance(label.linesShown().last().chopped(4));
  drag(label, {end, middleOfLine(label, 1)}, {299, middleOfLine(label, 1)});
  EXPECT_EQ(label.markedText(), QStringLiteral("/end"));
  label.setLoses(FieldLabel::Loses::End);
  drag(label, {0, middleOfLine(label, 0)}, {299, middleOfLine(label, 1)});
  EXPECT_EQ(label.markedText(), label.text());
}

TEST(FieldLabel, FromRightToLeftMarkingBeginsOnTheRight) {
  FieldLabel label;
  label.setLayoutDirection(Qt::RightToLeft);
  label.setFieldText(QString::fromUtf8("שלום עולם"));
  label.resize(300, label.heightForWidth(300));
  const int first = label.fontMetrics().horizontalAdvance(QString::fromUtf8("שלום"));
  drag(label, {299, middleOfLine(label, 0)}, {300 - first, middleOfLine(label, 0)});
  EXPECT_EQ(label.markedText(), QString::fromUtf8("שלום"));
}

TEST(FieldLabel, OfAllLabelsOfAWindowOneHasSomethingMarkedAndThatIsCopied) {
  QWidget window;
  FieldLabel one(&window), other(&window);
  for (FieldLabel* label : {&one, &other}) label->resize(300, 40);
  one.setFieldText(QStringLiteral("one"));
  other.setFieldText(QStringLiteral("other"));
  window.show();
  EXPECT_FALSE(FieldLabel::copyMarkedIn(window));
  drag(one, {0, middleOfLine(one, 0)}, {299, middleOfLine(one, 0)});
  drag(other, {0, middleOfLine(other, 0)}, {299, middleOfLine(other, 0)});
  EXPECT_EQ(one.markedText(), QString());
  EXPECT_TRUE(FieldLabel::copyMarkedIn(window));
  EXPECT_EQ(QGuiApplication::clipboard()->text(), QStringLiteral("other"));
}

TEST(FieldLabel, ADoubleClickMarksAWord) {
  FieldLabel label;
  label.setFieldText(QStringLiteral("/opt/Sample Studio"));
  label.resize(300, label.heightForWidth(300));
  const int at = label.fontMetrics().horizontalAdvance(QStringLiteral("/opt/Sam"));
  QMouseEvent event(QEvent::MouseButtonDblClick, QPoint(at, middleOfLine(label, 0)),
                    label.mapToGlobal(QPoint(at, 5)), Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(&label, &event);
  EXPECT_EQ(label.markedText(), QStringLiteral("Sample"));
}

}  // namespace
}  // namespace halvorn
