// What holds for every table of texts, however many there are.
#include <gtest/gtest.h>

#include <QLocale>
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <regex>
#include <set>
#include <string>

#include "Platform/bundles/linux/LinuxLocalizedStrings.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/TestFiles.h"
#include "tests/window/unit/LanguageTables.h"

namespace halvorn {
namespace {

constexpr char kSystemTooOld[] =
    "%1$@ %2$@ cannot be installed on this computer because it requires Mac OS X %3$@ or newer.";

// The languages of fewer people come and go; these are what the installer is known to speak.
TEST(LocalizableStrings, AreThereForAtLeastSixtyLanguages) {
  std::set<std::string> languages;
  for (const LanguageTable& table : languageTables()) languages.insert(table.language);
  EXPECT_GE(languages.size(), 60U);
  for (const char* language : {"ar", "de", "en", "es", "fa", "fr", "he", "ja", "ru", "ur", "zh_CN"})
    EXPECT_TRUE(languages.contains(language)) << language;
}

TEST(LocalizableStrings, AFolderIsNamedAsLocalesAreInTheEnvironment) {
  static const std::regex name("[a-z]{2,3}(_[A-Z][a-z]{3})?(_[A-Z]{2})?");
  for (const LanguageTable& table : languageTables()) {
    EXPECT_TRUE(std::regex_match(table.language, name)) << table.language;
    EXPECT_NE(QLocale(QString::fromStdString(table.language)).language(), QLocale::C) << table.language;
  }
}

TEST(LocalizableStrings, EveryTableHasTheSameKeysOnce) {
  ASSERT_GT(englishTable().texts.size(), 40U);
  for (const LanguageTable& table : languageTables()) {
    for (const auto& [key, text] : englishTable().texts) {
      EXPECT_TRUE(table.texts.contains(key)) << table.language << " lacks: " << key;
      EXPECT_FALSE(table.text(key).isEmpty()) << table.language << ": " << key;
    }
    for (const auto& [key, text] : table.texts)
      EXPECT_TRUE(englishTable().texts.contains(key)) << table.language << " has more: " << key;
    EXPECT_EQ(table.entries, static_cast<int>(table.texts.size())) << table.language;
  }
}

// Each line is a comment, an entry or empty, so that nothing can be written past its key.
TEST(LocalizableStrings, EveryTableIsUtf8InTheFormatOfTables) {
  for (const LanguageTable& table : languageTables()) {
    EXPECT_TRUE(Text::fromStrictUtf8(table.bytes).has_value()) << table.language;
    EXPECT_FALSE(table.bytes.starts_with("\xEF\xBB\xBF")) << table.language;
    EXPECT_TRUE(table.bytes.ends_with(";\n")) << table.language;
    static const std::regex others(
        R"re(/\*[^*]*\*/|^"(?:[^"\\\n]|\\["\\r])*" = "(?:[^"\\\n]|\\["\\r])*";$)re", std::regex::multiline);
    const std::string rest = std::regex_replace(table.bytes, others, "");
    EXPECT_EQ(rest.find_first_not_of('\n'), std::string::npos) << table.language << ": " << rest;
  }
}

TEST(LocalizableStrings, TranslationsKeepThePlaceholdersInNumberAndPosition) {
  for (const LanguageTable& table : languageTables()) {
    for (const auto& [key, text] : table.texts) {
      std::vector<std::string> wanted = placeholdersOf(QString::fromStdString(key));
      std::vector<std::string> found = placeholdersOf(text);
      std::sort(wanted.begin(), wanted.end());
      std::sort(found.begin(), found.end());
      EXPECT_EQ(found, wanted) << table.language << ": " << key;
      EXPECT_EQ(static_cast<std::size_t>(text.count(u'%')), found.size()) << table.language << ": " << key;
      EXPECT_EQ(text.count(u'\r'), QString::fromStdString(key).count(u'\r')) << table.language << ": " << key;
    }
  }
}

bool isEnglish(const std::string& language) { return language == "en" || language.starts_with("en_"); }

// Each three words that follow one another, without names and numbers.
QStringList runsOfWords(const QString& text) {
  const QStringList words = text.split(u' ');
  QStringList runs;
  for (qsizetype i = 0; i + 2 < words.size(); ++i) runs << words.mid(i, 3).join(u' ');
  runs.removeIf([](const QString& run) { return run.contains(u'%'); });
  return runs;
}

// Short words may be the same; a sentence is not.
TEST(LocalizableStrings, NoEnglishIsLeftOver) {
  constexpr int kSameWordsAtMost = 6;  // "OK", "?", "Installation" in French
  for (const LanguageTable& table : languageTables()) {
    if (isEnglish(table.language)) continue;
    int same = 0;
    for (const auto& [key, text] : table.texts) {
      const bool isSame = text == englishTable().text(key) || text == QString::fromStdString(key);
      same += isSame ? 1 : 0;
      EXPECT_FALSE(isSame && text.count(u' ') > 1) << table.language << ": " << key;
      for (const QString& words : runsOfWords(englishTable().text(key)))
        EXPECT_FALSE(text.contains(words)) << table.language << ": " << text.toStdString();
    }
    EXPECT_LE(same, kSameWordsAtMost) << table.language;
  }
}

// What the program looks up, with the literals joined that the compiler joins.
std::string everythingThatLooksUp() {
  static const std::regex seam("\"\\s*\n\\s*\"");
  std::string all;
  for (const char* folder : {"/Sources", "/Platform/window/linux"}) {
    for (const auto& file :
         std::filesystem::recursive_directory_iterator(KT_SOURCE_DIR + std::string(folder))) {
      if (file.path().extension() == ".cpp")
        all += std::regex_replace(contentsOf(file.path().string()), seam, "");
    }
  }
  return all;
}

std::string escaped(const std::string& key) {
  std::string written;
  for (const char character : key) {
    if (character == '"') written += '\\';
    written += character == '\r' ? std::string("\\r") : std::string(1, character);
  }
  return written;
}

std::set<std::string> textsOfTheDescription() {
  const std::string description = contentsOf(KT_SOURCE_DIR "/Resources/InstallerWindow.xml");
  static const std::regex attribute(R"re(\b(?:title|text|name)="([^"]*)")re");
  std::set<std::string> texts;
  for (std::sregex_iterator it(description.begin(), description.end(), attribute), end; it != end; ++it)
    texts.insert((*it)[1]);
  return texts;
}

TEST(LocalizableStrings, EveryTextOfTheWindowIsInTheTable) {
  EXPECT_GT(textsOfTheDescription().size(), 10U);
  for (const std::string& text : textsOfTheDescription())
    EXPECT_TRUE(englishTable().texts.contains(text)) << text;
}

// Whether the table has the text that is written so in a source.
bool isKnown(const std::string& written) {
  return std::any_of(englishTable().texts.begin(), englishTable().texts.end(),
                     [&](const auto& entry) { return escaped(entry.first) == written; });
}

// The texts in the call whose opening parenthesis stands at `at`, neighbours joined as the compiler does it.
std::vector<std::string> literalsOf(const std::string& source, std::size_t at) {
  static const std::regex part(R"re("((?:[^"\\]|\\.)*)"|[()]|[^"()\s]+)re");
  std::vector<std::string> found;
  int depth = 0;
  bool isJoined = false;
  for (std::sregex_iterator it(source.begin() + static_cast<std::ptrdiff_t>(at), source.end(), part), end;
       it != end; ++it) {
    const std::string whole = it->str();
    if (whole == "(") ++depth;
    if (whole == ")" && --depth == 0) break;
    const bool isText = whole.front() == '"';
    if (isText && isJoined) found.back() += (*it)[1];
    if (isText && !isJoined) found.push_back((*it)[1]);
    isJoined = isText;
  }
  return found;
}

TEST(LocalizableStrings, EveryLocalizedTextOfTheSourcesIsInTheTable) {
  // What is called with a key, and how often with one that comes from another of these calls.
  const std::map<std::string, int> handedOn = {
      {"localized", 2}, {"showSetupError", 2}, {"showFinalMessage", 4}};
  for (const auto& [name, count] : handedOn) {
    const std::regex call(R"((?:[.>]|\b)()" + name + R"()\()");
    int texts = 0, others = 0;
    for (const auto& file : std::filesystem::directory_iterator(KT_SOURCE_DIR "/Sources")) {
      if (file.path().extension() != ".cpp") continue;
      const std::string source = contentsOf(file.path().string());
      for (std::sregex_iterator it(source.begin(), source.end(), call), end; it != end; ++it) {
        const auto keys = literalsOf(source, static_cast<std::size_t>(it->position(1)) + name.size());
        if (keys.empty()) ++others;
        for (const std::string& key : keys) {
          EXPECT_TRUE(isKnown(key)) << file.path() << ": " << key;
          ++texts;
        }
      }
    }
    EXPECT_GT(texts, 0) << name;
    EXPECT_EQ(others, count) << name << ": where do the texts of the new ones come from?";
  }
}

TEST(LocalizableStrings, EveryReasonOfAFailedCopyIsInTheTable) {
  const std::string source = contentsOf(KT_SOURCE_DIR "/Sources/InstallWorker.cpp");
  static const std::regex failed(R"re(Kind::Failed, InstallFailure::\w+, "([^"]*)")re");
  int texts = 0;
  for (std::sregex_iterator it(source.begin(), source.end(), failed), end; it != end; ++it, ++texts) {
    EXPECT_TRUE(isKnown((*it)[1])) << (*it)[1];
  }
  EXPECT_EQ(texts, 3);
}

// The texts of the toolkit's menus are tried where the menus are: ToolkitTexts.
TEST(LocalizableStrings, NoKeyIsUnused) {
  const std::vector<std::string>& toolkit = textsOfTheToolkit();
  const std::set<std::string> description = textsOfTheDescription();
  const std::string sources = everythingThatLooksUp();
  for (const auto& [key, text] : englishTable().texts) {
    const bool used = description.contains(key) ||
                      std::find(toolkit.begin(), toolkit.end(), key) != toolkit.end() ||
                      sources.find("\"" + escaped(key) + "\"") != std::string::npos;
    EXPECT_TRUE(used) << key;
  }
}

TEST(LocalizableStrings, EveryLanguageNamesTheProgram) {
  const auto nameIn = [](const std::string& language) {
    const LanguageTable names = languageTable(KT_SOURCE_DIR "/Resources", language, "InfoPlist");
    EXPECT_EQ(names.entries, 1) << language;
    return names.text("CFBundleDisplayName");
  };
  const QString english = nameIn("en");
  for (const LanguageTable& table : languageTables()) {
    const QString name = nameIn(table.language);
    EXPECT_TRUE(name.contains(QStringLiteral("Halvorn"))) << table.language;
    EXPECT_FALSE(name.contains(u'/')) << table.language;
    EXPECT_EQ(name == english, isEnglish(table.language)) << table.language << ": " << name.toStdString();
  }
}

class RealTable : public testing::Test {
 protected:
  LinuxLocalizedStrings strings(const std::string& language) {
    const std::filesystem::path resources = folder_.path() / "Test.app/Contents/Resources";
    if (!std::filesystem::exists(resources)) {
      std::filesystem::create_directories(resources.parent_path());
      std::filesystem::copy(KT_SOURCE_DIR "/Resources", resources, std::filesystem::copy_options::recursive);
    }
    return {folder_ / "Test.app", {Text(language)}};
  }
  TemporaryFolder folder_;
};

TEST_F(RealTable, IsReadByTheInstallerAsItStandsInTheFile) {
  for (const LanguageTable& table : languageTables()) {
    const LinuxLocalizedStrings read = strings(table.language);
    for (const auto& [key, text] : table.texts)
      EXPECT_EQ(read.localized(Text(key)).bytes(), text.toStdString()) << table.language;
  }
}

TEST_F(RealTable, TheVersionAlertNamesThisSystem) {
  EXPECT_EQ(strings("en").localized(kSystemTooOld),
            "%1$@ %2$@ cannot be installed on this computer because it requires Linux kernel %3$@ or newer.");
  for (const LanguageTable& table : languageTables()) {
    const QString text = table.text(kSystemTooOld);
    const bool isNamed = text.contains(QStringLiteral("Linux")) || text.contains(QStringLiteral("Linuks")) ||
                         text.contains(QStringLiteral("Линукс"));
    EXPECT_TRUE(isNamed) << table.language;
    EXPECT_FALSE(text.contains(QStringLiteral("Mac"))) << table.language;
    EXPECT_FALSE(text.contains(QStringLiteral("OS"))) << table.language;
  }
}

}  // namespace
}  // namespace halvorn
