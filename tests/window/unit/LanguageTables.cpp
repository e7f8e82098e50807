#include "tests/window/unit/LanguageTables.h"

#include <QRegularExpression>
#include <algorithm>
#include <filesystem>
#include <regex>
#include <stdexcept>

#include "tests/support/TestFiles.h"

namespace halvorn {
namespace {

// What a text of a file stands for.
std::string unescaped(const std::string& written) {
  std::string text;
  for (std::size_t i = 0; i < written.size(); ++i) {
    if (written[i] != '\\' || i + 1 == written.size()) {
      text.push_back(written[i]);
      continue;
    }
    const char next = written[++i];
    text.push_back(next == 'r' ? '\r' : next == 'n' ? '\n' : next);
  }
  return text;
}

std::vector<LanguageTable> readAll() {
  const std::string folder = KT_SOURCE_DIR "/Resources";
  std::vector<LanguageTable> tables;
  for (const auto& item : std::filesystem::directory_iterator(folder)) {
    if (item.path().extension() == ".lproj")
      tables.push_back(languageTable(folder, item.path().stem().string()));
  }
  std::sort(tables.begin(), tables.end(),
            [](const auto& one, const auto& other) { return one.language < other.language; });
  return tables;
}

}  // namespace

LanguageTable languageTable(const std::string& folder, const std::string& language, const std::string& name) {
  const std::string path = folder + "/" + language + ".lproj/" + name + ".strings";
  LanguageTable table{language, std::filesystem::exists(path) ? contentsOf(path) : "", {}, 0};
  static const std::regex entry(R"re(^"((?:[^"\\\n]|\\.)*)" = "((?:[^"\\\n]|\\.)*)";$)re",
                                std::regex::multiline);
  for (std::sregex_iterator it(table.bytes.begin(), table.bytes.end(), entry), end; it != end; ++it) {
    table.texts[unescaped((*it)[1])] = QString::fromStdString(unescaped((*it)[2]));
    ++table.entries;
  }
  return table;
}

const std::vector<LanguageTable>& languageTables() {
  static const std::vector<LanguageTable> tables = readAll();
  return tables;
}

const LanguageTable& englishTable() {
  for (const LanguageTable& table : languageTables()) {
    if (table.language == "en") return table;
  }
  throw std::runtime_error("no English table");
}

const std::vector<std::string>& textsOfTheToolkit() {
  static const std::vector<std::string> texts = {
      "&Copy",      "Copy &Link Location", "Select All",  "Ctrl",        "Scroll here", "Top",
      "Bottom",     "Left edge",           "Right edge",  "Page up",     "Page down",   "Page left",
      "Page right", "Scroll up",           "Scroll down", "Scroll left", "Scroll right"};
  return texts;
}

std::vector<std::string> placeholdersOf(const QString& text) {
  static const QRegularExpression placeholder(QStringLiteral("%(?:\\d\\$)?@"));
  std::vector<std::string> found;
  for (auto it = placeholder.globalMatch(text); it.hasNext();)
    found.push_back(it.next().captured().toStdString());
  return found;
}

std::map<int, int> scriptsOf(const QString& text) {
  std::map<int, int> scripts;
  for (const char32_t scalar : text.toUcs4()) {
    if (QChar::isLetter(scalar) && QChar::script(scalar) > QChar::Script_Common)
      ++scripts[QChar::script(scalar)];
  }
  return scripts;
}

}  // namespace halvorn
