#include <gtest/gtest.h>

#include <QFile>
#include <QTextBlock>
#include <QTextList>
#include <QTextTable>
#include <random>
#include <string>

#include "Platform/window/linux/readme/RtfDocument.h"

namespace halvorn {
namespace {

QByteArray sample(const char* name) {
  QFile file(QStringLiteral(KT_SOURCE_DIR "/tests/data/window/") + QLatin1String(name));
  EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << name;
  return file.readAll();
}

// The document's text with its paragraphs separated by "|".
std::string textOf(const QByteArray& rtf) {
  const auto read = readRtf(rtf);
  if (!read) return "no rich text";
  QTextDocument document;
  renderRtf(*read, document);
  QString text = document.toRawText();
  for (const QChar mark : {QChar(0x2029), QChar(0xFDD0), QChar(0xFDD1)}) text.replace(mark, u'|');
  return text.toStdString();
}

std::string textOfBody(const char* body) {
  return textOf(QByteArray("{\\rtf1\\ansi\\ansicpg1252 ") + body + "}");
}

// The format of the first run that contains the word.
QTextCharFormat formatOf(const QTextDocument& document, const char* word) {
  return document.find(QLatin1String(word)).charFormat();
}

TEST(RtfReader, TextComesOutAsWritten) {
  const struct {
    const char* body;
    const char* text;
    const char* why;
  } cases[] = {
      {"plain", "plain", "plain text"},
      {"a\\par b", "a|b", "a paragraph ends"},
      {"a\\\nb", "a|b", "a backslash at the line's end ends the paragraph"},
      {"a\nb\r\nc", "abc", "line ends of the file mean nothing"},
      {"a\\line b",
       "a\xE2\x80\xA8"
       "b",
       "a line ends within its paragraph"},
      {"\\{x\\}\\\\", "{x}\\", "escaped braces and backslash"},
      {"Gr\\'fc\\'dfe", "Grüße", "bytes of the code page"},
      {"\\uc1\\u26085?\\u26412?", "日本", "one stand-in per Unicode unit"},
      {"\\uc0\\u26085 \\u26412 x", "日本x", "no stand-ins"},
      {"\\uc2\\u228 ae!", "ä!", "two stand-ins"},
      {"\\uc1\\u228\\'e4!", "ä!", "a stand-in may be a byte"},
      {"\\uc0\\u-10179 \\u-8692 ", "😌", "surrogates join"},
      {"{\\uc0 {\\uc2\\u228 ae}}\\u228 a!", "ää!", "stand-in counts end with their group"},
      {"a\\~b\\_c\\-d",
       "a\xC2\xA0"
       "b\xE2\x80\x91"
       "c\xC2\xAD"
       "d",
       "hard blank, hard and soft hyphen"},
      {"\\emdash\\bullet\\ldblquote x\\rdblquote ", "—•“x”", "named characters"},
      {"a{\\*\\unknown hidden {too}}b", "ab", "an unknown optional group is left out"},
      {"a{\\unknownword b}c", "abc", "an unknown word is left out, its text stays"},
      {"a{\\v hidden}b", "ab", "hidden text"},
      {"a{\\header top}{\\footnote note}b", "ab", "headers and footnotes are elsewhere"},
      {"{\\field{\\*\\fldinst{PAGE}}{\\fldrslt 7}}", "7", "a field shows its result"},
      {"a\\tab b", "a\tb", "tabulator"},
      {"\\b1x\\b0y", "xy", "a digit ends a word without a blank"},
      {"\\'zz", "zz", "no hexadecimal byte"},
  };
  for (const auto& [body, text, why] : cases) EXPECT_EQ(textOfBody(body), text) << why;
}

TEST(RtfReader, BytesAreReadInTheEncodingOfTheirFont) {
  const QByteArray rtf =
      "{\\rtf1\\ansi\\ansicpg1252{\\fonttbl{\\f0 A;}{\\f1\\fcharset204 B;}{\\f2\\fcharset128 "
      "C;}{\\f3\\fcharset77 D;}"
      "{\\f4\\fcharset2 Symbol;}}\\f0\\'e4\\f1\\'e4\\f2\\'82\\'a0\\f3\\'8a\\f4\\'b7}";
  EXPECT_EQ(textOf(rtf), "äдあä•");
}

TEST(RtfReader, TheDocumentNamesItsEncoding) {
  EXPECT_EQ(textOf("{\\rtf1\\ansi\\ansicpg1251 \\'e4}"), "д");
  EXPECT_EQ(textOf("{\\rtf1\\mac \\'8a}"), "ä");
  EXPECT_EQ(textOf("{\\rtf1\\pc \\'84}"), "ä");
}

TEST(RtfReader, ATextEditorsDocumentKeepsItsLooks) {
  QTextDocument document;
  renderRtf(*readRtf(sample("editor.rtf")), document);
  const QString text = document.toPlainText();
  EXPECT_TRUE(text.startsWith(QStringLiteral("Sample Studio 2.1\n"))) << text.toStdString();
  EXPECT_TRUE(text.contains(QStringLiteral("日本😌"))) << text.toStdString();
  EXPECT_EQ(document.firstBlock().blockFormat().alignment() & Qt::AlignHorizontal_Mask, Qt::AlignHCenter);
  EXPECT_EQ(formatOf(document, "Sample").fontWeight(), QFont::Bold);
  EXPECT_EQ(formatOf(document, "Sample").fontPointSize(), 18.0);
  EXPECT_EQ(formatOf(document, "Sample").fontFamilies().toStringList().value(0),
            QStringLiteral("Helvetica-Bold"));
  EXPECT_TRUE(formatOf(document, "read-me").fontItalic());
  EXPECT_TRUE(formatOf(document, "underlined").fontUnderline());
  EXPECT_TRUE(formatOf(document, "struck").fontStrikeOut());
  EXPECT_EQ(formatOf(document, "red").foreground().color(), QColor(200, 30, 30));
  EXPECT_FALSE(formatOf(document, "words").hasProperty(QTextFormat::ForegroundBrush));
  EXPECT_EQ(formatOf(document, "release").anchorHref(), QStringLiteral("https://example.com/notes"));
  EXPECT_TRUE(formatOf(document, "for more").anchorHref().isEmpty());
}

TEST(RtfReader, BulletsBecomeAList) {
  QTextDocument document;
  renderRtf(*readRtf(sample("editor.rtf")), document);
  const QTextBlock item = document.find(QStringLiteral("Layers")).block();
  ASSERT_NE(item.textList(), nullptr);
  EXPECT_EQ(item.textList()->format().style(), QTextListFormat::ListDisc);
  EXPECT_EQ(item.textList()->count(), 2);
  EXPECT_EQ(item.text(), QStringLiteral("Layers can be grouped"));
}

TEST(RtfReader, RowsBecomeATable) {
  QTextDocument document;
  renderRtf(*readRtf(sample("editor.rtf")), document);
  QTextTable* table = document.find(QStringLiteral("Supported")).currentTable();
  ASSERT_NE(table, nullptr);
  EXPECT_EQ(table->rows(), 2);
  EXPECT_EQ(table->columns(), 2);
  EXPECT_EQ(table->cellAt(1, 1).firstCursorPosition().block().text(), QStringLiteral("H2O, m2"));
  EXPECT_EQ(document.find(QStringLiteral("After the table")).currentTable(), nullptr);
}

TEST(RtfReader, AnOfficeProgramsDocumentKeepsItsLooks) {
  QTextDocument document;
  renderRtf(*readRtf(sample("office.rtf")), document);
  const std::string text = document.toPlainText().toStdString();
  EXPECT_NE(text.find("Read me first\nPlain “quoted” text, Привет and small words."), std::string::npos)
      << text;
  for (const char* elsewhere : {"Hidden", "Somebody", "Page header", "Carlito", "heading 1"}) {
    EXPECT_EQ(text.find(elsewhere), std::string::npos) << elsewhere;
  }
  const QTextBlock bullet = document.find(QStringLiteral("Second")).block();
  ASSERT_NE(bullet.textList(), nullptr);
  EXPECT_EQ(bullet.textList()->format().style(), QTextListFormat::ListDisc);
  const QTextBlock number = document.find(QStringLiteral("Two")).block();
  ASSERT_NE(number.textList(), nullptr);
  EXPECT_EQ(number.textList()->itemText(number), QStringLiteral("2)"));
  EXPECT_EQ(formatOf(document, "Write to us").anchorHref(), QStringLiteral("mailto:help@example.com"));
  EXPECT_NE(text.find("שלום"), std::string::npos);
  EXPECT_EQ(document.find(QStringLiteral("שלום")).blockFormat().layoutDirection(), Qt::RightToLeft);
}

TEST(RtfReader, APictureIsShownInItsSize) {
  QTextDocument document;
  renderRtf(*readRtf(sample("office.rtf")), document);
  int pictures = 0;
  for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
    for (auto it = block.begin(); !it.atEnd(); ++it) {
      if (!it.fragment().charFormat().isImageFormat()) continue;
      ++pictures;
      const QTextImageFormat format = it.fragment().charFormat().toImageFormat();
      EXPECT_EQ(format.width(), 40.0);
      EXPECT_FALSE(document.resource(QTextDocument::ImageResource, QUrl(format.name())).isNull());
    }
  }
  EXPECT_EQ(pictures, 1);
}

TEST(RtfReader, WhatIsNoRichTextIsRefused) {
  EXPECT_FALSE(readRtf(""));
  EXPECT_FALSE(readRtf("{\\rt"));
  EXPECT_FALSE(readRtf("Hello"));
}

TEST(RtfReader, TwoHundredThousandBracesAreReadWithoutHarm) {
  QByteArray deep = "{\\rtf1 before ";
  deep += QByteArray(200'000, '{') + "lost" + QByteArray(200'000, '}') + "after}";
  EXPECT_EQ(textOf(deep), "before after");
  EXPECT_EQ(textOf("{\\rtf1 x" + QByteArray(200'000, '{')), "x");
  EXPECT_EQ(textOf("{\\rtf1 x}" + QByteArray(200'000, '}')), "x");
}

TEST(RtfReader, ADocumentCutAnywhereGivesItsBeginning) {
  for (const char* name : {"editor.rtf", "office.rtf"}) {
    const QByteArray whole = sample(name);
    const std::string complete = textOf(whole);
    for (qsizetype length = 6; length < whole.size(); length += 7) {
      const auto read = readRtf(whole.left(length));
      ASSERT_TRUE(read) << length;
      QTextDocument document;
      renderRtf(*read, document);
      ASSERT_LE(document.characterCount(), static_cast<int>(complete.size()) + 64) << length;
    }
  }
}

TEST(RtfReader, DamagedDocumentsDoNoHarm) {
  std::mt19937 random(7);
  const QByteArray whole = sample("office.rtf") + sample("editor.rtf").mid(1);
  for (int round = 0; round < 400; ++round) {
    QByteArray damaged = whole;
    for (int i = 0; i < 12; ++i) {
      const auto at = 6 + static_cast<qsizetype>(random() % static_cast<unsigned>(damaged.size() - 6));
      constexpr char kNasty[] = "{}\\';*-0\xFF\n";
      damaged[at] = (random() % 2) != 0 ? kNasty[random() % 10] : static_cast<char>(random());
    }
    const auto read = readRtf(damaged);
    ASSERT_TRUE(read);
    QTextDocument document;
    renderRtf(*read, document);
    ASSERT_GE(document.characterCount(), 1);
  }
}

TEST(RtfReader, ParagraphsAndCharactersAreBounded) {
  QByteArray many = "{\\rtf1 ";
  for (int i = 0; i < 200'000; ++i) many += "\\par ";
  EXPECT_LE(readRtf(many)->blocks.size(), 50'002U);
  const auto large = readRtf("{\\rtf1 " + QByteArray(6'000'000, 'x') + "\\par y}");
  ASSERT_TRUE(large);
  EXPECT_EQ(large->blocks.size(), 1U);
}

TEST(RtfReader, BinaryDataIsSkippedByItsLength) {
  EXPECT_EQ(textOf(QByteArray("{\\rtf1 a{\\*\\x\\bin4 }}{{}b}", 26)), "ab");
  EXPECT_EQ(textOf("{\\rtf1 a{\\pict\\pngblip\\bin999999999 rest}"), "a");
  EXPECT_EQ(textOf("{\\rtf1 a\\bin-5 b}"), "ab");
}

TEST(RtfReader, APictureThatIsNoneIsLeftOut) {
  EXPECT_EQ(textOfBody("a{\\pict\\pngblip 89504e47}b"), "ab");
  EXPECT_EQ(textOfBody("a{\\pict\\wmetafile8 0100}b"), "ab");
}

TEST(RtfReader, ATableWithoutEndAndWithoutRowsIsShown) {
  EXPECT_EQ(textOfBody("\\intbl a\\cell b\\cell"), "|a|b|");
  EXPECT_EQ(textOfBody("\\trowd\\cellx100\\row x"), "x");
  EXPECT_EQ(textOfBody("\\intbl a"), "|a|");
}

}  // namespace
}  // namespace halvorn
