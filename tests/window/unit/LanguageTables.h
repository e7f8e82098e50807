// The tables of texts as their files have them: a folder is a language, nobody lists them.
#pragma once

#include <QString>
#include <map>
#include <string>
#include <vector>

namespace halvorn {

using TextsByKey = std::map<std::string, QString>;

struct LanguageTable {
  std::string language;  // the folder's name without ".lproj"
  std::string bytes;     // the whole file
  TextsByKey texts;
  int entries = 0;  // lines that are entries; more than texts when a key is there twice

  [[nodiscard]] QString text(const std::string& key) const {
    const auto found = texts.find(key);
    return found == texts.end() ? QString() : found->second;
  }
};

// NAME.strings in that folder of languages; a table without texts when the file is missing.
[[nodiscard]] LanguageTable languageTable(const std::string& folder, const std::string& language,
                                          const std::string& name = "Localizable");
// Every table of the installer, in the order of the languages' names.
[[nodiscard]] const std::vector<LanguageTable>& languageTables();
[[nodiscard]] const LanguageTable& englishTable();
// The keys that are texts of the toolkit's menus.
[[nodiscard]] const std::vector<std::string>& textsOfTheToolkit();

// "%@", "%1$@" and their like, in their order.
[[nodiscard]] std::vector<std::string> placeholdersOf(const QString& text);
// How often each writing system occurs among the letters, placeholders aside.
[[nodiscard]] std::map<int, int> scriptsOf(const QString& text);

}  // namespace halvorn
