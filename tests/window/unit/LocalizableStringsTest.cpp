#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <sstream>
#include <string>

#include "Platform/bundles/linux/LinuxLocalizedStrings.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/TestFiles.h"

namespace halvorn {
namespace {

// Keys and values as they stand in the file.
std::map<std::string, std::string> tableOf(const std::string& language) {
  const std::string text = contentsOf(KT_SOURCE_DIR "/Resources/" + language + ".lproj/Localizable.strings");
  static const std::regex entry(R"re(^"((?:[^"\\]|\\.)*)" = "((?:[^"\\]|\\.)*)";$)re", std::regex::multiline);
  std::map<std::string, std::string> table;
  for (std::sregex_iterator it(text.begin(), text.end(), entry), end; it != end; ++it)
    table[(*it)[1]] = (*it)[2];
  return table;
}

std::multiset<std::string> placeholdersOf(const std::string& text) {
  static const std::regex placeholder(R"(%(?:\d\$)?@)");
  std::multiset<std::string> found;
  for (std::sregex_iterator it(text.begin(), text.end(), placeholder), end; it != end; ++it)
    found.insert(it->str());
  return found;
}

TEST(LocalizableStrings, BothLanguagesHaveTheSameKeys) {
  const auto english = tableOf("en");
  const auto german = tableOf("de");
  ASSERT_GT(english.size(), 30U);
  for (const auto& [key, value] : english) EXPECT_TRUE(german.contains(key)) << key;
  EXPECT_EQ(english.size(), german.size());
}

TEST(LocalizableStrings, TranslationsKeepThePlaceholders) {
  for (const char* language : {"en", "de"}) {
    for (const auto& [key, value] : tableOf(language)) {
      const auto wanted = placeholdersOf(key);
      const auto found = placeholdersOf(value);
      EXPECT_EQ(std::set<std::string>(wanted.begin(), wanted.end()),
                std::set<std::string>(found.begin(), found.end()))
          << language << ": " << key;
    }
  }
}

TEST(LocalizableStrings, EveryTextOfTheWindowIsInTheTable) {
  const auto table = tableOf("en");
  const std::string description = contentsOf(KT_SOURCE_DIR "/Resources/InstallerWindow.xml");
  static const std::regex attribute(R"re(\b(?:title|text|name)="([^"]*)")re");
  int texts = 0;
  for (std::sregex_iterator it(description.begin(), description.end(), attribute), end; it != end;
       ++it, ++texts) {
    EXPECT_TRUE(table.contains((*it)[1])) << (*it)[1];
  }
  EXPECT_GT(texts, 10);
}

TEST(LocalizableStrings, EveryLocalizedTextOfTheSourcesIsInTheTable) {
  const auto table = tableOf("en");
  static const std::regex call(R"re(localized\("((?:[^"\\]|\\.)*)"\))re");
  for (const auto& file : std::filesystem::directory_iterator(KT_SOURCE_DIR "/Sources")) {
    const std::string source = contentsOf(file.path().string());
    for (std::sregex_iterator it(source.begin(), source.end(), call), end; it != end; ++it) {
      EXPECT_TRUE(table.contains((*it)[1])) << file.path() << ": " << (*it)[1];
    }
  }
}

class RealTable : public testing::Test {
 protected:
  Text localized(const char* language, const char* key) {
    const std::filesystem::path resources = folder_.path() / "Test.app/Contents/Resources";
    if (!std::filesystem::exists(resources)) {
      std::filesystem::create_directories(resources.parent_path());
      std::filesystem::copy(KT_SOURCE_DIR "/Resources", resources, std::filesystem::copy_options::recursive);
    }
    return LinuxLocalizedStrings(folder_ / "Test.app", {language}).localized(key);
  }
  TemporaryFolder folder_;
};

TEST_F(RealTable, TheVersionAlertNamesThisSystem) {
  const char* key =
      "%1$@ %2$@ cannot be installed on this computer because it requires Mac OS X %3$@ or newer.";
  EXPECT_EQ(localized("en", key),
            "%1$@ %2$@ cannot be installed on this computer because it requires Linux kernel %3$@ or newer.");
  EXPECT_TRUE(localized("de", key).contains("Linux-Kernel %3$@"));
}

TEST_F(RealTable, EscapesInKeysAndValuesAreTheirCharacters) {
  EXPECT_EQ(localized("de", "If you wish to read the documentation first, click the \"?\" button."),
            "Wenn Sie zuerst die Bedienungsanleitung lesen möchten, klicken Sie auf die Schaltfläche „?“.");
  EXPECT_TRUE(localized("de",
                        "%1$@ cannot be running during the installation.\rQuit %1$@, then click \"Install\" "
                        "again.")
                  .contains("\rBeenden Sie"));
}

}  // namespace
}  // namespace halvorn
