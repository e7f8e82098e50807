// How the texts are written: what a printer's eye would see in any language.
#include <gtest/gtest.h>

#include <QRegularExpression>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "Platform/window/linux/Mnemonics.h"
#include "tests/window/unit/LanguageTables.h"

namespace halvorn {
namespace {

constexpr char kReadFirst[] = "If you wish to read the documentation first, click the \"?\" button.";
constexpr char kStillRunning[] =
    "%1$@ cannot be running during the installation.\rQuit %1$@, then click \"Install\" again.";
constexpr char kByHand[] = "Try installing %1$@ manually by copying it to the Applications folder.";

// Runs the check with each text of each language; it answers what is wrong with it, "" for nothing.
template <typename Check>
void expectNothingWrong(Check check) {
  for (const LanguageTable& table : languageTables()) {
    for (const auto& [key, text] : table.texts) {
      const QString wrong = check(table, key, text);
      EXPECT_TRUE(wrong.isEmpty()) << table.language << ": " << wrong.toStdString() << ": "
                                   << text.toStdString();
    }
  }
}

QString found(const QString& text, const char* pattern) {
  return QRegularExpression(QString::fromUtf8(pattern), QRegularExpression::UseUnicodePropertiesOption)
      .match(text)
      .captured();
}

// The signs around that word of a text, blanks aside.
QString quotesAround(const QString& text, const QString& word) {
  static const QString blanks = QStringLiteral(" \u00A0\u202F");
  for (qsizetype at = text.indexOf(word); at >= 0; at = text.indexOf(word, at + 1)) {
    qsizetype before = at - 1;
    qsizetype after = at + word.size();
    while (before >= 0 && blanks.contains(text.at(before))) --before;
    while (after < text.size() && blanks.contains(text.at(after))) ++after;
    if (before < 0 || after >= text.size()) continue;
    const QString pair = QString(text.at(before)) + text.at(after);
    if (!found(pair, R"([“”„‟«»「」『』‹›’‘‚״]{2})").isEmpty()) return pair;
  }
  return {};
}

// KEEP: the installer's own English sentences stand as they are, straight quotation marks included.
TEST(LanguageWriting, TheEnglishSentencesAreTheInstallersOwn) {
  for (const char* const key : {kReadFirst, kStillRunning, kByHand}) {
    EXPECT_EQ(englishTable().text(key), QString::fromUtf8(key));
  }
}

TEST(LanguageWriting, QuotesAndApostrophesAreTypographic) {
  expectNothingWrong([](const LanguageTable& table, const std::string& key, const QString& text) {
    const bool isOurOwn = table.language == "en" && text == QString::fromStdString(key);
    return isOurOwn ? QString() : found(text, R"(["'`´]|\.\.\.)");
  });
}

TEST(LanguageWriting, ALanguageQuotesInOneWay) {
  for (const LanguageTable& table : languageTables()) {
    if (table.language == "en") continue;  // its sentences are the installer's own
    const QString help = quotesAround(table.text(kReadFirst), table.text("?"));
    const QString install = quotesAround(table.text(kStillRunning), table.text("Install"));
    const QString folder = quotesAround(table.text(kByHand), QStringLiteral("Applications"));
    EXPECT_FALSE(help.isEmpty()) << table.language << ": " << table.text(kReadFirst).toStdString();
    EXPECT_EQ(install, help) << table.language << ": " << table.text(kStillRunning).toStdString();
    EXPECT_EQ(folder, help) << table.language << ": " << table.text(kByHand).toStdString();
  }
}

TEST(LanguageWriting, BlanksAreSingleAndBreakNowhereBeforeASign) {
  expectNothingWrong([](const LanguageTable& table, const std::string&, const QString& text) {
    const bool spacesItsSigns = table.language == "fr" || table.language == "oc";
    const QString tight = found(text, R"([^\x{00A0}\x{202F}][?!:;»]|«[^\x{00A0}\x{202F}])");
    if (spacesItsSigns && !tight.isEmpty()) return tight;
    // In Swedish, Finnish and Urdu ” is the sign that stands first.
    const bool standsFirst = quotesAround(table.text(kReadFirst), table.text("?")).startsWith(u'”');
    const QString wrong = found(text, R"(^\s|\s$|[ \t]{2}| [?!:;.,»]|« |\t|\n)");
    return wrong.isEmpty() && !standsFirst ? found(text, " ”") : wrong;
  });
}

// Between signs of their own width, commas and full stops have theirs.
TEST(LanguageWriting, CommasAreAsWideAsTheSignsAroundThem) {
  expectNothingWrong([](const LanguageTable&, const std::string&, const QString& text) {
    return found(text, R"([\p{Han}\p{Hiragana}\p{Katakana}] ?[,.:;!]|،,|[\p{Arabic}][,;?])");
  });
}

TEST(LanguageWriting, LettersAreComposed) {
  expectNothingWrong([](const LanguageTable&, const std::string&, const QString& text) {
    return text == text.normalized(QString::NormalizationForm_C) ? QString() : QStringLiteral("not composed");
  });
}

// A letter that only looks right is found by no search and read out wrongly.
TEST(LanguageWriting, NoWordMixesWritingSystems) {
  const std::set<int> alike = {QChar::Script_Latin, QChar::Script_Cyrillic, QChar::Script_Greek,
                               QChar::Script_Armenian};
  expectNothingWrong([&](const LanguageTable&, const std::string&, const QString& text) {
    for (const QString& word : text.split(QRegularExpression(
             QStringLiteral("[^\\p{L}\\p{M}]+"), QRegularExpression::UseUnicodePropertiesOption))) {
      std::set<int> scripts;
      for (const auto& [script, count] : scriptsOf(word)) {
        if (alike.contains(script)) scripts.insert(script);
      }
      if (scripts.size() > 1) return word;
    }
    return QString();
  });
}

bool isFromRightToLeft(const LanguageTable& table) {
  int right = 0;
  int left = 0;
  for (const auto& [key, text] : table.texts) {
    if (key == "LayoutDirection") continue;
    for (const QChar letter : text) {
      right += letter.direction() == QChar::DirR || letter.direction() == QChar::DirAL ? 1 : 0;
      left += letter.direction() == QChar::DirL ? 1 : 0;
    }
  }
  return right > left;
}

TEST(LanguageWriting, TheWindowRunsAsTheLettersDo) {
  std::set<std::string> mirrored;
  for (const LanguageTable& table : languageTables()) {
    const bool right = isFromRightToLeft(table);
    EXPECT_EQ(table.text("LayoutDirection"), right ? QStringLiteral("RTL") : QStringLiteral("LTR"))
        << table.language;
    if (right) mirrored.insert(table.language);
  }
  for (const char* language : {"ar", "fa", "he", "ur"}) EXPECT_TRUE(mirrored.contains(language)) << language;
}

// Thai, Lao and Burmese end a sentence in their own way, or in none.
TEST(LanguageWriting, ASentenceEndsAsOneWhereTheEnglishDoes) {
  expectNothingWrong([](const LanguageTable& table, const std::string& key, const QString& text) {
    const bool ends = !found(text, R"([.。।။։۔።។]$)").isEmpty();
    if (key.ends_with(".") == ends || table.language == "th" || table.language == "lo") return QString();
    return ends ? QStringLiteral("ends as a sentence") : QStringLiteral("does not end as a sentence");
  });
}

TEST(LanguageWriting, ATextNamesAButtonAsTheButtonIsCalled) {
  for (const LanguageTable& table : languageTables()) {
    EXPECT_TRUE(table.text(kReadFirst).contains(table.text("?"))) << table.language;
    EXPECT_TRUE(table.text(kStillRunning).contains(table.text("Install"))) << table.language;
  }
}

// Each letter is a key of the menu; what a keyboard cannot type stands behind the word: "复制(&C)".
TEST(LanguageWriting, TheLettersOfAMenuDoNotClash) {
  for (const LanguageTable& table : languageTables()) {
    QString letters;
    for (const char* key : {"&Copy", "Copy &Link Location"}) {
      const QString text = table.text(key);
      EXPECT_EQ(text.count(u'&'), 1) << table.language << ": " << text.toStdString();
      letters += found(text, R"(&\p{L})").mid(1).toCaseFolded();
    }
    EXPECT_EQ(letters.size(), 2) << table.language << ": " << letters.toStdString();
    EXPECT_NE(letters.left(1), letters.mid(1)) << table.language;
    EXPECT_EQ(table.text("Select All").count(u'&'), 0) << table.language;
  }
}

// Where each key types a letter; elsewhere the letters are put together.
bool isTypedLetterByLetter(const QString& title) {
  for (const auto& [script, count] : scriptsOf(title)) {
    const std::set<int> composed = {QChar::Script_Han, QChar::Script_Hiragana, QChar::Script_Katakana,
                                    QChar::Script_Hangul, QChar::Script_Thai};
    if (composed.contains(script) ||
        (script >= QChar::Script_Devanagari && script <= QChar::Script_Malayalam))
      return false;
  }
  return true;
}

TEST(LanguageWriting, ButtonsThatStandTogetherHaveLettersOfTheirOwn) {
  int languages = 0;
  for (const LanguageTable& table : languageTables()) {
    for (const auto& titles : {std::pair("Cancel", "Install"), std::pair("Cancel", "Continue"),
                               std::pair("Go Back", "Install"), std::pair("Visit Archive", "Quit")}) {
      const QStringList shown = {table.text("?"), table.text(titles.first), table.text(titles.second)};
      const std::vector<QChar> letters = mnemonicsFor(shown);
      const bool typed = isTypedLetterByLetter(shown.join(QString()));
      EXPECT_TRUE(letters[0].isNull()) << table.language;
      EXPECT_EQ(!letters[1].isNull() && !letters[2].isNull(), typed) << table.language;
      EXPECT_TRUE(!typed || letters[1].toCaseFolded() != letters[2].toCaseFolded()) << table.language;
      languages += typed ? 1 : 0;
    }
  }
  EXPECT_GT(languages, 200) << "of four times the languages";
}

// A person who knows nothing of it can tell the buttons apart.
TEST(LanguageWriting, ButtonsThatStandTogetherAreCalledDifferently) {
  for (const LanguageTable& table : languageTables()) {
    const std::vector<std::vector<const char*>> together = {
        {"Install", "Cancel"}, {"Install", "Go Back"}, {"Continue", "Cancel"}, {"Quit", "Visit Archive"}};
    for (const auto& titles : together)
      EXPECT_NE(table.text(titles[0]), table.text(titles[1])) << table.language;
    for (const char* title : {"Continue", "Install", "Cancel", "Go Back", "OK", "Quit", "Visit Archive"})
      EXPECT_LE(table.text(title).size(), 30) << table.language << ": " << table.text(title).toStdString();
  }
}

}  // namespace
}  // namespace halvorn
