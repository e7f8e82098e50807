#include "Platform/window/linux/FieldLabel.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QMenu>

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
  ASSERT_EQ(menu->actions().size(), 1);
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

}  // namespace
}  // namespace halvorn
