#include "Platform/window/linux/readme/ReadMeDocument.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <QTextBlock>
#include <QTextFrame>
#include <QTextTable>
#include <QUrl>
#include <algorithm>
#include <fstream>
#include <string>
#include <utility>
#include <vector>

#include "Platform/window/linux/readme/DocumentLimits.h"
#include "Platform/window/linux/readme/MarkupGuard.h"
#include "Platform/window/linux/readme/TextGuess.h"
#include "tests/support/TemporaryFolder.h"

namespace halvorn {
namespace {

using namespace std::string_literals;

std::string sample(const char* name) { return std::string(KT_SOURCE_DIR "/tests/data/window/") + name; }

class ReadMe : public testing::Test {
 protected:
  // The text of the document in a file of that name; "cannot be read" for none.
  std::string textOf(const std::string& name, const std::string& bytes) {
    const std::string path = folder_ / name;
    std::ofstream(path, std::ios::binary) << bytes;
    const halvorn::ReadMeDocument read = readMeDocument(path);
    isWhole_ = read.isWhole;
    return read.document ? read.document->toPlainText().toStdString() : "cannot be read";
  }
  bool isWhole_ = false;  // of the document that textOf() read
  TemporaryFolder folder_;
};

TEST_F(ReadMe, PlainTextIsReadInItsEncoding) {
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

TEST_F(ReadMe, PlainTextIsNoMarkup) { EXPECT_EQ(textOf("a.txt", "1 < 2 <b>x</b>"), "1 < 2 <b>x</b>"); }

TEST_F(ReadMe, HtmlIsShownAsADocument) {
  const auto document = readMeDocument(sample("readme.html")).document;
  ASSERT_TRUE(document);
  const std::string text = document->toPlainText().toStdString();
  EXPECT_NE(text.find("Thank you for choosing Sample Studio."), std::string::npos) << text;
  EXPECT_EQ(text.find('<'), std::string::npos) << text;
  EXPECT_EQ(document->find(QStringLiteral("release")).charFormat().anchorHref(),
            QStringLiteral("https://example.com/notes"));
}

// For whom colors look alike.
TEST_F(ReadMe, ALinkIsUnderlinedWhateverTheDocumentSays) {
  const std::vector<std::pair<std::string, std::string>> documents = {
      {"a.html", "<p>See <a href='https://a.example'>link</a>."},
      {"b.html", "<p>See <a href='https://a.example' style='text-decoration: none'>link</a>."},
      {"c.html", "<style>a { text-decoration: none }</style><p>See <a href='https://a.example'>link</a>."},
      {"d.md", "See [link](https://a.example)."},
      {"e.rtf", R"({\rtf1 See {\field{\*\fldinst HYPERLINK "https://a.example"}{\fldrslt link}}.})"}};
  for (const auto& [name, bytes] : documents) {
    const std::string path = folder_ / name;
    std::ofstream(path) << bytes;
    const auto document = readMeDocument(path).document;
    ASSERT_TRUE(document) << name;
    const QTextCharFormat link = document->find(QStringLiteral("link")).charFormat();
    EXPECT_EQ(link.anchorHref(), QStringLiteral("https://a.example")) << name;
    EXPECT_TRUE(link.fontUnderline()) << name;
    EXPECT_FALSE(document->find(QStringLiteral("See")).charFormat().fontUnderline()) << name;
  }
}

TEST_F(ReadMe, HtmlNamesItsEncoding) {
  EXPECT_EQ(textOf("a.html", "<meta charset=\"windows-1251\"><p>\xE4</p>"), "д");
  EXPECT_EQ(textOf("b.html", "<p>ä</p>"), "ä");
  EXPECT_EQ(textOf("c.htm", "<p>\xE4</p>"), "ä");
}

TEST_F(ReadMe, HtmlIsKnownByItsStart) { EXPECT_EQ(textOf("README", "<!DOCTYPE html><p>x"), "x"); }

TEST_F(ReadMe, ScriptsAndStyleSheetsAreNotPartOfIt) {
  EXPECT_EQ(textOf("a.html", "<script>document.write('no')</script><p onclick='x()'>yes</p>"), "yes");
  EXPECT_EQ(textOf("b.html", "<style>p { color: red }</style><p>yes</p>"), "yes");
}

TEST_F(ReadMe, NothingOutsideTheDocumentIsLoaded) {
  std::ofstream(folder_ / "secret.css") << "p { color: #ff0000 }";
  std::ofstream(folder_ / "secret.png") << "x";
  const std::string style = "<link rel=stylesheet href='file://" + (folder_ / "secret.css") + "'>";
  const std::string path = folder_ / "a.html";
  std::ofstream(path) << style << "<p>text</p><img src='file://" << (folder_ / "secret.png")
                      << "'><img src='secret.png'><img src='http://127.0.0.1:9/x.png'>";
  const auto document = readMeDocument(path).document;
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

TEST_F(ReadMe, APictureInsideTheDocumentIsShown) {
  const std::string pixel =
      "iVBORw0KGgoAAAANSUhEUgAAAAoAAAAKCAYAAACNMs+9AAAAFUlEQVR42mP8z8BQz0AEYBxVSF+"
      "FABJADveWkH6oAAAAAElFTkSuQmCC";
  const std::string path = folder_ / "a.html";
  std::ofstream(path) << "<img src='data:image/png;base64," << pixel << "'>";
  const auto document = readMeDocument(path).document;
  const QUrl name(QStringLiteral("data:image/png;base64,") + QString::fromStdString(pixel));
  EXPECT_EQ(document->resource(QTextDocument::ImageResource, name).value<QPixmap>().size(), QSize(10, 10));
}

TEST_F(ReadMe, MarkdownIsShownAsADocument) {
  const auto document = readMeDocument(sample("readme.md")).document;
  ASSERT_TRUE(document);
  EXPECT_EQ(document->firstBlock().text(), QStringLiteral("Sample Studio 2.1"));
  EXPECT_EQ(document->firstBlock().blockFormat().headingLevel(), 1);
  EXPECT_NE(document->find(QStringLiteral("Layers")).block().textList(), nullptr);
}

TEST_F(ReadMe, MarkupInMarkdownIsText) {
  EXPECT_EQ(textOf("a.md", "<img src='file:///x.png'> <b>x</b>"), "<img src='file:///x.png'> <b>x</b>");
}

TEST_F(ReadMe, RichTextIsKnownByItsStartWhateverItsName) {
  EXPECT_EQ(textOf("readme.txt", "{\\rtf1 a\\par b}"), "a\nb");
  EXPECT_EQ(textOf("readme.rtf", "not rich"), "not rich");
}

TEST_F(ReadMe, ARichTextFolderIsReadThroughItsText) {
  ::mkdir((folder_ / "Read Me.rtfd").c_str(), 0755);
  std::ofstream(folder_ / "Read Me.rtfd/TXT.rtf") << "{\\rtf1 inside}";
  const auto document = readMeDocument(folder_ / "Read Me.rtfd").document;
  ASSERT_TRUE(document);
  EXPECT_EQ(document->toPlainText(), QStringLiteral("inside"));
}

TEST_F(ReadMe, WhatIsNoFileCannotBeRead) {
  EXPECT_FALSE(readMeDocument(folder_ / "missing").document);
  EXPECT_FALSE(readMeDocument(folder_.path().string()).document);
  EXPECT_FALSE(readMeDocument("").document);
  EXPECT_FALSE(readMeDocument("/dev/zero").document);
  ::mkfifo((folder_ / "pipe").c_str(), 0600);
  EXPECT_FALSE(readMeDocument(folder_ / "pipe").document) << "and does not wait for a writer";
}

TEST_F(ReadMe, AFileOfAnyNameIsRead) { EXPECT_EQ(textOf("na\xEFve \n%\".txt", "x"), "x"); }

TEST_F(ReadMe, OfALongDocumentTheBeginningIsShown) {
  const std::string line = "Some words of text that go on as usual.\n";
  std::string text;
  while (text.size() < std::size_t{9} * 1024 * 1024) text += line;
  for (const char* name : {"a.txt", "a.html", "a.md"}) {
    const std::string shown = textOf(name, text);
    EXPECT_FALSE(isWhole_) << name;
    EXPECT_EQ(shown.substr(0, line.size()), line) << name;
    EXPECT_GT(shown.size(), 200'000U) << name;
    EXPECT_LE(shown.size(), std::size_t{DocumentLimits::kMostCharacters}) << name;
  }
  const std::string rich = textOf("a.rtf", "{\\rtf1 " + text + "}");
  EXPECT_FALSE(isWhole_) << "rich text";
  EXPECT_EQ(rich.substr(0, 10), "Some words");
}

TEST_F(ReadMe, ABeginningIsReadInTheEncodingOfTheWhole) {
  // The place where reading ends falls into a character in two of the three.
  for (const std::string& before : {""s, "x"s, "xy"s}) {
    std::string text = before;
    while (text.size() < std::size_t{2} * 1024 * 1024) text += "漢\n";
    EXPECT_EQ(textOf("a.txt", text).substr(0, before.size() + 3), before + "漢") << before;
    EXPECT_FALSE(isWhole_);
  }
}

TEST_F(ReadMe, AnOrdinaryDocumentIsWhole) {
  for (const char* name : {"readme.html", "readme.md", "editor.rtf"}) {
    const halvorn::ReadMeDocument read = readMeDocument(sample(name));
    ASSERT_TRUE(read.document) << name;
    EXPECT_TRUE(read.isWhole) << name;
    EXPECT_GT(read.document->allFormats().size(), 5) << name << ": has formats";
  }
}

TEST_F(ReadMe, ALineThatIsTooLongBecomesSeveralParagraphsOfTheSameText) {
  for (const std::string& piece : {"word "s, "x"s, "\U0001F600"s, "a\u0301"s}) {
    std::string line;
    while (line.size() < 100'000) line += piece;
    std::string shown = textOf("a.txt", line);
    EXPECT_TRUE(isWhole_) << piece;
    EXPECT_GT(std::count(shown.begin(), shown.end(), '\n'), 5) << piece;
    std::erase(shown, '\n');
    EXPECT_EQ(shown, line) << piece;
  }
}

TEST_F(ReadMe, LineEndsOfAllSystemsAreLineEnds) {
  EXPECT_EQ(textOf("a.txt", "a\r\nb\rc\nd\n\ne"), "a\nb\nc\nd\n\ne");
  EXPECT_EQ(textOf("b.txt", "a\n"), "a\n");
}

// What a toolkit's reader or layout takes the square or the cube of is shown without its formats.
TEST_F(ReadMe, WhatWouldTakeTooLongIsShownAsPlainText) {
  const auto times = [](int count, const std::string& text) {
    std::string all;
    for (int i = 0; i < count; ++i) all += text;
    return all;
  };
  const struct {
    const char* what;
    const char* name;
    std::string bytes;
  } kCases[] = {
      {"cells that span a lot", "a.html", "<table>" + times(10, "<tr><td colspan=1000 rowspan=1000>cell")},
      {"spans in other words", "a.html",
       "<table>" + times(10, "<tr><td colspan='&#49;000' RowSpan = \"900\">cell")},
      {"many tags", "a.html", times(20'000, "<b>cell</b>")},
      {"many items", "a.html", "<ul>" + times(2'000, "<li>cell")},
      {"many columns", "a.html", "<table><tr>" + times(500, "<td>cell")},
      {"tables in tables", "a.html", times(5, "<table><tr><td>") + "cell"},
      {"a long paragraph", "a.html", "<p>" + times(2'000, "cell ")},
      {"many rules", "a.html",
       "<style>" + times(500, "p {color: red}") + "</style>" + times(2'000, "<p>cell")},
      {"many fonts", "a.html",
       [] {
         std::string all;
         for (int i = 1; i < 90; ++i) all += "<p style='font-size:" + std::to_string(i) + "pt'>cell";
         return all;
       }()},
      {"letters like houses", "a.html", "<p style='font-size: 90000pt'>cell"},
      {"brackets", "a.md", times(50'000, "[") + "cell **x**"},
      {"marks in one paragraph", "a.md", times(2'000, "*a **cell** c* ")},
      {"many items", "b.md", times(2'000, "* cell\n")},
      {"many columns", "b.md", times(500, "|cell") + "\n" + times(500, "|-") + "\n"},
      {"many runs", "a.rtf", "{\\rtf1 " + times(20'000, "{\\b cell}x") + "}"},
      {"many cells", "a.rtf",
       "{\\rtf1 " + times(100, "\\trowd" + times(60, "\\cellx100") + times(60, "cell\\cell ") + "\\row ") +
           "}"},
      {"a narrow table below a wide row", "a.rtf",
       "{\\rtf1 \\trowd" + times(60, "\\cellx100") + times(60, "cell\\cell ") + "\\row " +
           times(900, "\\trowd\\cellx100 cell\\cell\\row ") + "}"}};
  for (const auto& each : kCases) {
    const std::string path = folder_ / each.name;
    std::ofstream(path, std::ios::binary) << each.bytes;
    const double begun = ReadingBudget::ofThisThread();
    const auto document = readMeDocument(path).document;
    EXPECT_LT(ReadingBudget::ofThisThread() - begun, 2.0) << each.what << ", without optimization";
    ASSERT_TRUE(document) << each.what;
    EXPECT_TRUE(document->toPlainText().contains(QStringLiteral("cell"))) << each.what;
    EXPECT_TRUE(document->rootFrame()->childFrames().isEmpty()) << each.what;
    for (QTextBlock block = document->begin(); block.isValid(); block = block.next()) {
      ASSERT_TRUE(block.textList() == nullptr) << each.what;
      ASSERT_LE(block.length(), DocumentLimits::kLongestParagraph + 1) << each.what;
      for (auto it = block.begin(); !it.atEnd(); ++it)
        ASSERT_FALSE(it.fragment().charFormat().hasProperty(QTextFormat::FontWeight) ||
                     it.fragment().charFormat().hasProperty(QTextFormat::FontPointSize))
            << each.what;
    }
  }
}

TEST_F(ReadMe, WhenTheBudgetIsSpentThereIsThePlainText) {
  double now = 0;
  const ReadingBudget spent(0, [&now] { return now; });
  for (const char* name : {"readme.html", "readme.md", "editor.rtf"}) {
    const halvorn::ReadMeDocument read = readMeDocument(sample(name), spent);
    ASSERT_TRUE(read.document) << name;
    EXPECT_LE(read.document->allFormats().size(), 3) << name << ": no formats";
    EXPECT_FALSE(read.document->isEmpty()) << name;
  }
}

TEST_F(ReadMe, RichTextEndsWhereTheBudgetDoes) {
  std::string rich = "{\\rtf1 begin ";
  for (int i = 0; i < 10'000; ++i) rich += "\\b0 ";
  const std::string path = folder_ / "a.rtf";
  std::ofstream(path, std::ios::binary) << rich << "end}";
  const ReadingBudget spent(0, [] { return 1.0; });
  const halvorn::ReadMeDocument read = readMeDocument(path, spent);
  EXPECT_FALSE(read.isWhole);
  EXPECT_EQ(read.document->toPlainText(), QStringLiteral("begin "));
}

TEST_F(ReadMe, DeepHtmlIsShownAsText) {
  std::string deep;
  for (int i = 0; i < 100'000; ++i) deep += "<b>";
  EXPECT_EQ(textOf("a.html", deep + "text &amp; more"), "text & more");
  std::string tables;
  for (int i = 0; i < 5'000; ++i) tables += "<table><tr><td>";
  EXPECT_EQ(textOf("b.html", tables + "cell"), "cell");
}

TEST_F(ReadMe, LargeHtmlIsShownAsText) {
  EXPECT_EQ(textOf("a.html", "<p>x</p>" + std::string(1'100'000, ' ')), "x");
}

TEST_F(ReadMe, DeepMarkdownIsShownAsText) {
  std::string deep;
  for (int i = 0; i < 20'000; ++i) deep += "* ";
  std::string shown = textOf("a.md", deep + "x");
  std::erase(shown, '\n');  // the line is a long one
  EXPECT_EQ(shown, deep + "x");
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
