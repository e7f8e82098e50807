#include "Platform/window/linux/readme/ReadMeDocument.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <QTextBlock>
#include <QUrl>
#include <fstream>
#include <string>

#include "Platform/window/linux/readme/MarkupGuard.h"
#include "Platform/window/linux/readme/TextGuess.h"
#include "tests/support/TemporaryFolder.h"

namespace halvorn {
namespace {

using namespace std::string_literals;

std::string sample(const char* name) { return std::string(KT_SOURCE_DIR "/tests/data/window/") + name; }

class ReadMeDocument : public testing::Test {
 protected:
  // The text of the document in a file of that name; "cannot be read" for none.
  std::string textOf(const std::string& name, const std::string& bytes) {
    const std::string path = folder_ / name;
    std::ofstream(path, std::ios::binary) << bytes;
    const auto document = readMeDocument(path);
    return document ? document->toPlainText().toStdString() : "cannot be read";
  }
  TemporaryFolder folder_;
};

TEST_F(ReadMeDocument, PlainTextIsReadInItsEncoding) {
  EXPECT_EQ(textOf("a.txt", "Grüße\nzwei"), "Grüße\nzwei");
  EXPECT_EQ(textOf("b.txt", "\xEF\xBB\xBFGrüße"), "Grüße") << "byte order mark";
  EXPECT_EQ(textOf("c.txt",
                   "Gr\xFC\xDF"
                   "e \x96 \x80"),
            "Grüße – €")
      << "Windows Latin";
  EXPECT_EQ(textOf("d.txt", "\xFF\xFEG\0r\0\xFC\0"s), "Grü") << "UTF-16 with mark";
  EXPECT_EQ(textOf("e.txt", "G\0r\0u\0s\0s\0"s), "Gruss") << "UTF-16 without mark";
  EXPECT_EQ(textOf("f.txt", "\0G\0r\0u\0s\0s"s), "Gruss") << "the other order";
  EXPECT_EQ(textOf("README", ""), "") << "empty";
}

TEST_F(ReadMeDocument, PlainTextIsNoMarkup) {
  EXPECT_EQ(textOf("a.txt", "1 < 2 <b>x</b>"), "1 < 2 <b>x</b>");
}

TEST_F(ReadMeDocument, HtmlIsShownAsADocument) {
  const auto document = readMeDocument(sample("readme.html"));
  ASSERT_TRUE(document);
  const std::string text = document->toPlainText().toStdString();
  EXPECT_NE(text.find("Thank you for choosing Sample Studio."), std::string::npos) << text;
  EXPECT_EQ(text.find('<'), std::string::npos) << text;
  EXPECT_EQ(document->find(QStringLiteral("release")).charFormat().anchorHref(),
            QStringLiteral("https://example.com/notes"));
}

TEST_F(ReadMeDocument, HtmlNamesItsEncoding) {
  EXPECT_EQ(textOf("a.html", "<meta charset=\"windows-1251\"><p>\xE4</p>"), "д");
  EXPECT_EQ(textOf("b.html", "<p>ä</p>"), "ä");
  EXPECT_EQ(textOf("c.htm", "<p>\xE4</p>"), "ä");
}

TEST_F(ReadMeDocument, HtmlIsKnownByItsStart) { EXPECT_EQ(textOf("README", "<!DOCTYPE html><p>x"), "x"); }

TEST_F(ReadMeDocument, ScriptsAndStyleSheetsAreNotPartOfIt) {
  EXPECT_EQ(textOf("a.html", "<script>document.write('no')</script><p onclick='x()'>yes</p>"), "yes");
  EXPECT_EQ(textOf("b.html", "<style>p { color: red }</style><p>yes</p>"), "yes");
}

TEST_F(ReadMeDocument, NothingOutsideTheDocumentIsLoaded) {
  std::ofstream(folder_ / "secret.css") << "p { color: #ff0000 }";
  std::ofstream(folder_ / "secret.png") << "x";
  const std::string style = "<link rel=stylesheet href='file://" + (folder_ / "secret.css") + "'>";
  const std::string path = folder_ / "a.html";
  std::ofstream(path) << style << "<p>text</p><img src='file://" << (folder_ / "secret.png")
                      << "'><img src='secret.png'><img src='http://127.0.0.1:9/x.png'>";
  const auto document = readMeDocument(path);
  ASSERT_TRUE(document);
  EXPECT_FALSE(document->find(QStringLiteral("text")).charFormat().hasProperty(QTextFormat::ForegroundBrush));
  for (const std::string& address : {"file://" + (folder_ / "secret.png"), "secret.png"s,
                                     "http://127.0.0.1:9/x.png"s, "qrc:/x"s, ":/x"s}) {
    const QVariant picture =
        document->resource(QTextDocument::ImageResource, QUrl(QString::fromStdString(address)));
    EXPECT_EQ(picture.value<QImage>().size(), QSize(1, 1)) << address;
  }
  EXPECT_TRUE(
      document->resource(QTextDocument::StyleSheetResource, QUrl(QStringLiteral("file:///etc/passwd")))
          .isNull());
}

TEST_F(ReadMeDocument, APictureInsideTheDocumentIsShown) {
  const std::string pixel =
      "iVBORw0KGgoAAAANSUhEUgAAAAoAAAAKCAYAAACNMs+9AAAAFUlEQVR42mP8z8BQz0AEYBxVSF+"
      "FABJADveWkH6oAAAAAElFTkSuQmCC";
  const std::string path = folder_ / "a.html";
  std::ofstream(path) << "<img src='data:image/png;base64," << pixel << "'>";
  const auto document = readMeDocument(path);
  const QUrl name(QStringLiteral("data:image/png;base64,") + QString::fromStdString(pixel));
  EXPECT_EQ(document->resource(QTextDocument::ImageResource, name).value<QPixmap>().size(), QSize(10, 10));
}

TEST_F(ReadMeDocument, MarkdownIsShownAsADocument) {
  const auto document = readMeDocument(sample("readme.md"));
  ASSERT_TRUE(document);
  EXPECT_EQ(document->firstBlock().text(), QStringLiteral("Sample Studio 2.1"));
  EXPECT_EQ(document->firstBlock().blockFormat().headingLevel(), 1);
  EXPECT_NE(document->find(QStringLiteral("Layers")).block().textList(), nullptr);
}

TEST_F(ReadMeDocument, MarkupInMarkdownIsText) {
  EXPECT_EQ(textOf("a.md", "<img src='file:///x.png'> <b>x</b>"), "<img src='file:///x.png'> <b>x</b>");
}

TEST_F(ReadMeDocument, RichTextIsKnownByItsStartWhateverItsName) {
  EXPECT_EQ(textOf("readme.txt", "{\\rtf1 a\\par b}"), "a\nb");
  EXPECT_EQ(textOf("readme.rtf", "not rich"), "not rich");
}

TEST_F(ReadMeDocument, ARichTextFolderIsReadThroughItsText) {
  ::mkdir((folder_ / "Read Me.rtfd").c_str(), 0755);
  std::ofstream(folder_ / "Read Me.rtfd/TXT.rtf") << "{\\rtf1 inside}";
  const auto document = readMeDocument(folder_ / "Read Me.rtfd");
  ASSERT_TRUE(document);
  EXPECT_EQ(document->toPlainText(), QStringLiteral("inside"));
}

TEST_F(ReadMeDocument, WhatIsNoFileCannotBeRead) {
  EXPECT_FALSE(readMeDocument(folder_ / "missing"));
  EXPECT_FALSE(readMeDocument(folder_.path().string()));
  EXPECT_FALSE(readMeDocument(""));
  EXPECT_FALSE(readMeDocument("/dev/zero"));
  ::mkfifo((folder_ / "pipe").c_str(), 0600);
  EXPECT_FALSE(readMeDocument(folder_ / "pipe")) << "and does not wait for a writer";
}

TEST_F(ReadMeDocument, AFileOfAnyNameIsRead) { EXPECT_EQ(textOf("na\xEFve \n%\".txt", "x"), "x"); }

TEST_F(ReadMeDocument, TooLargeADocumentCannotBeRead) {
  EXPECT_EQ(textOf("a.txt", std::string(8 * 1024 * 1024 + 1, 'x')), "cannot be read");
}

TEST_F(ReadMeDocument, DeepHtmlIsShownAsText) {
  std::string deep;
  for (int i = 0; i < 100'000; ++i) deep += "<b>";
  EXPECT_EQ(textOf("a.html", deep + "text &amp; more"), "text & more");
  std::string tables;
  for (int i = 0; i < 5'000; ++i) tables += "<table><tr><td>";
  EXPECT_EQ(textOf("b.html", tables + "cell"), "cell");
}

TEST_F(ReadMeDocument, LargeHtmlIsShownAsText) {
  EXPECT_EQ(textOf("a.html", "<p>x</p>" + std::string(1'100'000, ' ')), "x");
}

TEST_F(ReadMeDocument, DeepMarkdownIsShownAsText) {
  std::string deep;
  for (int i = 0; i < 20'000; ++i) deep += "* ";
  EXPECT_EQ(textOf("a.md", deep + "x"), deep + "x");
}

TEST(MarkupGuard, OrdinaryHtmlIsShallow) {
  std::string list = "<ul>";
  for (int i = 0; i < 2000; ++i) list += "<li>item<p>text<br><img src=x>";
  EXPECT_TRUE(isShallowHtml(QString::fromStdString(list + "</ul>")));
  std::string pairs;
  for (int i = 0; i < 2000; ++i) pairs += "<div><span>x</span></div><!-- <b> -->";
  EXPECT_TRUE(isShallowHtml(QString::fromStdString(pairs)));
  EXPECT_TRUE(isShallowHtml(QStringLiteral("</b></b></b> < > <")));
}

TEST(MarkupGuard, RulesAndLongNumbersAreShallowMarkdown) {
  EXPECT_TRUE(isShallowMarkdown(QString(100, u'-') + QStringLiteral("\ntext\n") + QString(100, u'*')));
  EXPECT_TRUE(isShallowMarkdown(QStringLiteral("1. one\n2. two\n> quote\n")));
  EXPECT_FALSE(isShallowMarkdown(QString(100, u'>') + QStringLiteral("x")));
}

TEST(TextGuess, BytesThatAreNoEncodingAtAllBecomeSomeText) {
  EXPECT_EQ(decodeGuessing(QByteArray("\x81\x8D\xFF", 3)).size(), 3);
  EXPECT_EQ(decodeGuessing(QByteArray("a\0b", 3)).size(), 3);
  EXPECT_TRUE(decodeGuessing({}).isEmpty());
}

}  // namespace
}  // namespace halvorn
